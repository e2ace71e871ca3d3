#include "LedgerHeads.h"

#include "host/Text.h"

#include <algorithm>
#include <array>

namespace kivra {
namespace {

// Ledger and group numbers every head created by the masters carries.
constexpr std::int32_t kLedgerNo = 7;
constexpr std::int32_t kGroupNo = 4;

constexpr qx::Amount Percent(std::int64_t whole, std::int64_t tenths = 0) {
    return qx::Amount::FromRaw(whole * qx::Amount::kScale + tenths * (qx::Amount::kScale / 10));
}

constexpr std::array<VatRate, 6> kVatRates = {{
    {"Tax-Free", 100, Percent(0), 111, kClassPurchaseTaxFree},
    {"VAT 1%", 101, Percent(1), 120, 320},
    {"VAT 4%", 104, Percent(4), 130, 330},
    {"VAT 5%", 105, Percent(5), 132, 331},
    {"VAT 8%", 108, Percent(8), 137, 336},
    {"VAT 12.5%", 1125, Percent(12, 5), 140, 340},
}};

} // namespace

std::span<const VatRate> VatRates() { return kVatRates; }

const VatRate* FindVatRate(std::int32_t code) {
    auto it = std::ranges::find(kVatRates, code, &VatRate::code);
    return it == kVatRates.end() ? nullptr : &*it;
}

bool IsFarmProduce(std::string_view itemName) {
    // Byte-wise is enough: a name with a non-Latin letter among its first six characters
    // cannot read as one of these words either way. The words are compared as they stand,
    // letter case included: "Wheat Dara" is not the commodity WHEAT.
    const auto commodity = qx::Trim(itemName.substr(0, 6));
    return commodity == "PADDY" || commodity == "WHEAT" || commodity == "COTTON";
}

std::int32_t LedgerHeads::Ensure(std::string_view name, std::int32_t group, std::int32_t vatClass,
                                 std::int32_t tradingLink) {
    // Heads are kept in upper case, so they are looked for so too: a backend that compares
    // case-sensitively must find the head a lower-case item name made last time.
    const auto head = qx::UpperCase(name);
    qx::Transaction unit(db_);
    auto record =
        db_.OpenRecordset("SELECT * FROM FAMASTER WHERE MHD=" + qx::SqlQuote(head) + " AND MST=''");
    std::int32_t code = 0;
    if (record->EndOfRows()) {
        code = db_.LookupValue("FAMASTER", "MAX(MCD)", "").AsInt() + 1;
        std::string salePurchase;
        if (vatClass != 0)
            salePurchase =
                db_.LookupValue("VATCLASSES", "SPO", "VATCLASSNO=" + std::to_string(vatClass))
                    .AsText();
        record->AddNew();
        record->SetField("MCD", code);
        record->SetField("MHD", head);
        record->SetField("MST", "");
        record->SetField("MSTATE", "");
        record->SetField("MDISTRICT", "");
        record->SetField("MTINNO", "");
        record->SetField("MBSHNO", group);
        record->SetField("MLGRNO", kLedgerNo);
        record->SetField("MGRPNO", kGroupNo);
        record->SetField("MSPO", salePurchase);
        record->SetField("mTrdNo", tradingLink);
        record->Update();
        db_.ExecuteSql("INSERT INTO FAHEADS (CODE,SUBCODE,HEAD,PRESSHEAD) VALUES (" +
                           std::to_string(code) + ",0," + qx::SqlQuote(head) + "," +
                           qx::SqlQuote(qx::PrintForm(head)) + ")",
                       128);
    } else {
        code = record->Field("MCD").AsInt();
        record->SetField("MBSHNO", group);
        record->Update();
    }
    record->Close();

    if (vatClass != 0) {
        auto classOfHead =
            "CODE=" + std::to_string(code) + " AND VATCODE=" + std::to_string(vatClass);
        if (db_.LookupValue("VATMASTER", "CODE", classOfHead).IsNull())
            db_.ExecuteSql("INSERT INTO VATMASTER (CODE,VATCODE) VALUES (" + std::to_string(code) +
                               "," + std::to_string(vatClass) + ")",
                           128);
    }
    unit.Commit();
    return code;
}

} // namespace kivra
