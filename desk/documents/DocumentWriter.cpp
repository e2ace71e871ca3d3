#include "DocumentWriter.h"

#include "DocumentRecords.h"

#include <utility>

namespace qx::desk {

void DocumentWriter::Write(std::int32_t number, bool cancelled) {
    CompanyDb& db = document_.Database();
    const Series& series = document_.CurrentSeries();
    const bool isNew = document_.IsNewDocument();
    const std::int32_t documentId = isNew ? NewDocumentId(db) : document_.DocumentID();
    std::int32_t voucherId = isNew ? 0 : VoucherOf(db, documentId);
    if (!isNew)
        DeleteContent(db, documentId);
    document_.SetIdentity(documentId, isNew);
    document_.Raise([](DocumentEvents& l) { l.SaveDocumentBegin(); });

    DocumentTotals totals;
    try {
        totals = totals_.Current();
    } catch (const std::overflow_error&) {
        throw SaveRefused("The document's total is too large to be worked out.");
    }
    PropertyBag main = MainRecord(documentId, number, isNew, totals, cancelled);
    const bool posts = series.voucherFactor != 0 && main.GetValue("CANCELLED").AsLong() == 0;
    if (posts && voucherId == 0)
        voucherId = app_.Vouchers().NextVoucherId(db);
    main.SetValue("VOUCHERID", posts ? voucherId : 0);
    document_.Raise([&](DocumentEvents& l) { l.SaveMain(main); });
    WriteMain(db, main, isNew);

    VoucherSource voucher{.voucherId = voucherId,
                          .documentId = documentId,
                          .date = document_.DocDate(),
                          .partyCode = document_.PartyID(),
                          .partyAmount = totals.grandTotal,
                          .lines = {},
                          .charges = {},
                          .roundOff = totals.roundOff};
    auto lines = db.OpenRecordset("SELECT FIRST 0 * FROM DOCDATA");
    int refNo = 0;
    // Rows() is asked each time: an extension may add lines while they are saved.
    for (int row = 1; row < items_.Grid().Rows(); ++row) {
        if (!document_.IsLine(row))
            continue;
        if (auto refusal = items_.UnworkedRefusal(row); !refusal.empty())
            throw SaveRefused(refusal);
        PropertyBag line = items_.LineRecord(row, documentId, ++refNo);
        document_.Raise([&](DocumentEvents& l) { l.SaveItem(row, line); });
        // A cancelled document is kept for the record and moves nothing.
        if (main.GetValue("CANCELLED").AsLong() != 0)
            for (std::string_view factor : {"STOCKFACTOR", "JFACTOR"})
                line.SetValue(factor, 0);
        WriteLine(*lines, line);
        if (!document_.IsHiddenLine(row))
            voucher.lines.push_back(
                {line.GetValue("PRODUCTID").AsInt(), line.GetValue("AMOUNT").AsAmount()});
    }
    const std::vector<AppliedCharge> charges = charges_.Applied(series, totals);
    WriteCharges(db, documentId, charges);
    if (posts) {
        for (std::size_t i = 0; i < charges.size(); ++i)
            voucher.charges.push_back(
                {series.charges[i].caption, charges[i].headCode,
                 series.charges[i].sign < 0 ? -charges[i].amount : charges[i].amount});
        PostVoucher(std::move(voucher), main);
    }
    document_.Raise([](DocumentEvents& l) { l.SaveDocumentEnd(); });
    if (isNew)
        TakeNumber(db, series.id, main.GetValue("DOCNUMBER").AsInt());
    document_.SetIdentity(documentId, false);
}

// An edited document's row as it stands (columns the screen does not hold keep their values),
// the main fields the table has, then the screen's own figures.
PropertyBag DocumentWriter::MainRecord(std::int32_t documentId, std::int32_t number, bool isNew,
                                       const DocumentTotals& totals, bool cancelled) {
    CompanyDb& db = document_.Database();
    const Series& series = document_.CurrentSeries();
    PropertyBag main = isNew ? PropertyBag() : ReadMain(db, documentId);
    const PropertyBag& fields = document_.MainFields();
    for (const std::string& name : fields.Names())
        if (db.FieldExists(name, "DOCMAIN"))
            main.SetValue(name, fields.GetValue(name));
    main.SetValue("DOCUMENTID", documentId);
    main.SetValue("DOCSERIES", series.code);
    main.SetValue("DOCSERIESID", series.id);
    main.SetValue("DOCNUMBER", number);
    main.SetValue("DOCDATE", document_.DocDate());
    main.SetValue("PARTYCODE", document_.PartyID());
    main.SetValue("SALETYPE", TextToAmount(document_.Form().TXPSALETYPE().Text()).WholePart());
    main.SetValue("GROSSAMT", totals.gross);
    main.SetValue("GRANDTOTAL", totals.grandTotal);
    main.SetValue("ROUNDOFFAMT", totals.roundOff);
    for (std::size_t i = 0; i < series.charges.size(); ++i)
        if (!series.charges[i].field.empty())
            main.SetValue(series.charges[i].field, totals.charges[i]);
    if (cancelled || isNew)
        main.SetValue("CANCELLED", cancelled ? 1 : 0);
    return main;
}

// The extensions see the voucher before its rows are written: they may change what the party
// is posted (PostingValue) and the narration, and add rows of their own when it ends.
void DocumentWriter::PostVoucher(VoucherSource source, const PropertyBag& main) {
    const Series& series = document_.CurrentSeries();
    PropertyBag fields;
    fields.SetValue("dTrnType", series.trnType);
    fields.SetValue("dBook", series.book);
    fields.SetValue("DocNarration",
                    series.narration.empty()
                        ? series.Title() + " No. " + main.GetValue("DOCNUMBER").AsText()
                        : series.narration);
    fields.SetValue("VoucherID", source.voucherId);
    fields.SetValue("dVchDate", source.date);
    fields.SetValue("DocumentID", source.documentId);
    document_.BeginVoucher(source.partyAmount, std::move(fields));
    document_.Raise([](DocumentEvents& l) { l.SaveVoucherBegin(); });

    source.partyAmount = document_.PostingValue(HostDocument::kPartyPosting);
    std::vector<VoucherRow> rows = BuildVoucherRows(document_.Database(), series, source);
    for (const VoucherRow& row : rows)
        document_.Raise([&](DocumentEvents& l) { l.SaveVoucherAddRow(RowRecord(row)); });
    // An extension's own rows are numbered after the host's.
    document_.VoucherFields().SetValue("dSrNo", static_cast<int>(rows.size()));
    document_.Raise([](DocumentEvents& l) { l.SaveVoucherEnd(); });
    WriteVoucher(document_.Database(), app_.Vouchers(), series, source, std::move(rows),
                 document_.VoucherFields().GetValue("DocNarration").AsText());
}

} // namespace qx::desk
