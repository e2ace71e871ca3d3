#include "MandiForm.h"

#include <stdexcept>

namespace kivra {
namespace {

[[noreturn]] void Unbound() {
    throw std::logic_error("The Kivra document extension is not bound to a document.");
}

} // namespace

void MandiForm::Bind(qx::HostDocument& document) {
    doc_ = &document;
    itemGrid_ = &document.Form().Grid();
    chargesGrid_ = &document.Form().GridTot2();
}

void MandiForm::Release() {
    doc_ = nullptr;
    itemGrid_ = nullptr;
    chargesGrid_ = nullptr;
    columns = {};
    formBookBox_ = 0;
    formNoBox_ = 0;
}

qx::HostDocument& MandiForm::Doc() const {
    if (!doc_) Unbound();
    return *doc_;
}

qx::ui::Grid& MandiForm::ItemGrid() const {
    if (!itemGrid_) Unbound();
    return *itemGrid_;
}

qx::ui::Grid& MandiForm::ChargesGrid() const {
    if (!chargesGrid_) Unbound();
    return *chargesGrid_;
}

bool MandiForm::IsGSTApplicableOn(qx::Date documentDate) {
    return documentDate >= qx::Date::FromYmd(2017, 7, 1);
}

void MandiForm::ForgetModuleColumns() {
    columns.lineCharges = 0;
    columns.addLessKgs = 0;
    columns.revBags = 0;
    columns.revBags2 = 0;
}

void MandiForm::NoteColumn(int col, const std::string& key) {
    if (key == "LINE_CHARGES")
        columns.lineCharges = col;
    else if (key == "ADD_LESS_KGS")
        columns.addLessKgs = col;
    else if (key == "REV_BAGS")
        columns.revBags = col;
    else if (key == "REV_BAGS2")
        columns.revBags2 = col;
}

void MandiForm::FindStandardColumns() {
    const auto& form = Form();
    columns.productId = form.Member("COL_PRODUCT_ID");
    columns.qtyPerBox = form.Member("COL_QTY_PER_BOX");
    columns.quantity = form.Member("COL_QUANTITY");
    columns.rate = form.Member("COL_RATE");
    columns.amount = form.Member("COL_AMOUNT");
    columns.stkCode = form.Member("COL_STK_CODE");
    columns.customerId = form.Member("COL_CUSTOMER_ID");
    columns.totalWt = form.Member("COL_TOTAL_WT");
    columns.noOfBoxes = form.Member("COL_NO_OF_BOXES");
    columns.pcs = form.Member("COL_PCS");
    columns.qualityCut = form.Member("COL_QUALITY_CUT");
    columns.batchNo = form.Member("COL_BATCH_NO");
    columns.diffQty = form.Member("COL_DIFF_QTY");
    columns.rowMark = form.Member("COL_ROW_MARK");
    columns.saleAmount = form.Member("COL_SALE_AMOUNT");
}

void MandiForm::FindInputBoxes() {
    formBookBox_ = 0;
    formNoBox_ = 0;
    const auto boxes = Form().TXPUDI();
    // Every box is examined: of two boxes with one name, the last wins.
    for (int i = 0; i < static_cast<int>(boxes.size()); ++i) {
        if (!boxes[i]) continue; // number 0 holds no box
        const std::string name = boxes[i]->ExtVal().GetValue("Name").AsText();
        if (name == "FORM_BOOK_NO")
            formBookBox_ = i;
        else if (name == "FORM_NO")
            formNoBox_ = i;
    }
}

qx::ui::TextBox& MandiForm::InputBox(int number) const {
    const auto boxes = Form().TXPUDI();
    if (number < 1 || number >= static_cast<int>(boxes.size()) || !boxes[number])
        throw std::logic_error("The document screen has no input box " + std::to_string(number) +
                               ".");
    return *boxes[number];
}

std::string MandiForm::Cell(int row, int col) const {
    return col > 0 ? ItemGrid().TextMatrix(row, col) : std::string();
}

qx::Amount MandiForm::Number(int row, int col) const {
    return qx::TextToAmount(Cell(row, col));
}

void MandiForm::SetCell(int row, int col, std::string text) {
    if (col > 0) ItemGrid().SetTextMatrix(row, col, std::move(text));
}

void MandiForm::SetCellInColumnFormat(int row, int col, qx::Amount value) {
    if (col > 0) SetCell(row, col, qx::FormatAmount(value, ItemGrid().ColumnFormat(col)));
}

std::int32_t MandiForm::FirstLineItemCode() const {
    if (ItemGrid().Rows() < 2) return 0;
    return qx::Value(Cell(1, columns.stkCode)).AsInt();
}

bool MandiForm::IsCompanionRow(int row) const {
    return Cell(row, columns.rowMark).find(qx::kHiddenRowMark) != std::string::npos;
}

std::int32_t MandiForm::MarketId() const {
    return Doc().MainFields().GetValue("MarketID").AsInt();
}

bool MandiForm::AnsweredNo(const std::string& question) const {
    return context_.Util().ShowMessage(question, qx::kYesNo, "Q") == qx::kAnswerNo;
}

void MandiForm::Notify(const std::string& notice) const {
    context_.Util().ShowMessage(notice, "", "W");
}

} // namespace kivra
