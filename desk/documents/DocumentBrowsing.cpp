#include "DocumentBrowsing.h"

#include "Series.h"

#include "host/HostSelectDialog.h"
#include "host/Text.h"

namespace qx::desk {

std::int32_t ChooseSeries(DeskApp& app, std::string_view docType) {
    auto list = app.CreateSelectDialog();
    list->SetCaption("Series");
    auto rows = app.DeskSession().Database().OpenRecordset(
        "SELECT SERIESID, SERIESNAME, SUBSERIESNAME, DOCTYPE FROM DOCCONFIG ORDER BY SERIESNAME, "
        "SUBSERIESNAME");
    for (; !rows->EndOfRows(); rows->MoveNext())
        if (docType.empty() || EqualsNoCase(rows->Field(3).AsText(), docType))
            list->AddItem(SeriesTitle(rows->Field(1).AsText(), rows->Field(2).AsText()),
                          rows->Field(0).AsLong());
    return list->Show() ? static_cast<std::int32_t>(list->SelectedValue()) : 0;
}

std::int32_t ChooseDocument(DeskApp& app, std::int32_t seriesId, const std::string& caption) {
    auto list = app.CreateSelectDialog();
    list->SetCaption(caption);
    auto rows = app.DeskSession().Database().OpenRecordset(
        "SELECT M.DOCUMENTID, M.DOCDATE, M.DOCNUMBER, F.MHD, M.GRANDTOTAL, M.CANCELLED FROM "
        "DOCMAIN M LEFT JOIN FAMASTER F ON F.MCD=M.PARTYCODE WHERE M.DOCSERIESID=" +
        std::to_string(seriesId) + " ORDER BY M.DOCDATE, M.DOCNUMBER");
    for (; !rows->EndOfRows(); rows->MoveNext())
        list->AddItem(BrowseEntry(rows->Field(1).AsDate(), rows->Field(2).AsInt(),
                                  rows->Field(3).AsText(), rows->Field(4).AsAmount(),
                                  rows->Field(5).AsBool()),
                      rows->Field(0).AsLong());
    rows->Close();
    return list->Show() ? static_cast<std::int32_t>(list->SelectedValue()) : 0;
}

std::string BrowseEntry(Date date, std::int32_t number, const std::string& party, Amount total,
                        bool cancelled) {
    return date.ToDisplay() + "  No. " + std::to_string(number) + "  " + party + "  " +
           FormatAmount(total, "c2") + (cancelled ? "  (cancelled)" : "");
}

} // namespace qx::desk
