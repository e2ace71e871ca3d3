#include "SeasonCompany.h"

#include "MandiDesk.h"

#include "desk/core/Session.h"
#include "desk/documents/DocumentTotals.h"
#include "desk/documents/Series.h"
#include "desk/documents/SeriesImport.h"
#include "kivra/documents/DailyVoucher.h"
#include "kivra/documents/PendingJForms.h"
#include "kivra/documents/Levies.h"
#include "kivra/module/mKivraModule.h"
#include "kivra/reports/FormM.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace qx::bench {
namespace {

using desk::ChargeBasis;

Amount A(std::string_view text) {
    return *Amount::Parse(text);
}

// The demo company's items, with the rates its "Kivra Rates" screen is given.
struct Item {
    std::string_view name; // its VAT category has the same name
    std::string_view kgPerBag;
    int rate;  // rupees a quintal, around which the season's bids go
    int share; // percent of the season's forms
    std::string_view labourJF, labourIF, damiIF, stitchIF, dharamIF, loadingIF, dami, labour,
        stitch, loading, damping, commission, marketFee, rdf, pidf, purTax, cancerFund;
};
constexpr std::array<Item, 5> kItems = {{
    {"WHEAT", "50",   2275,   20,  "3.50", "4.25", "2.5", "1.10", "0.05", "1.50", "2.5",
     "3.50",  "1.10", "1.50", "0", "2.5",  "3",    "3",   "0",    "0",    "0"},
    {"PADDY", "37.5", 2300,   45,     "3.75", "4.50", "2.5", "1.10", "0.05", "1.60", "2.5",
     "3.75",  "1.10", "1.60", "0.50", "2.5",  "3",    "3",   "0",    "0",    "0"},
    {"BASMATI", "50",   3850,   15,  "3.75", "4.50", "2.5", "1.10", "0.05", "1.60", "2.5",
     "3.75",    "1.10", "1.60", "0", "2.5",  "2",    "2",   "0",    "0",    "0"},
    {"MAIZE", "50",   2090,   10,  "3.25", "4.00", "2.5", "1.00", "0.05", "1.40", "2.5",
     "3.25",  "1.00", "1.40", "0", "2.5",  "2",    "2",   "0",    "0",    "0"},
    {"COTTON", "50", 7020,   10,  "4.50", "5.00", "1.5", "0", "0.05", "2.00", "1.5",
     "4.50",   "0",  "2.00", "0", "1.5",  "2",    "2",   "0", "0",    "0"},
}};

struct Market {
    std::string_view name;
    std::string_view series; // the prefix of its form numbers
    int share;               // percent of the season's forms
};
constexpr std::array<Market, 4> kMarkets = {
    {{"KHANNA", "KHN", 50}, {"JAGRAON", "JGN", 20}, {"SAMRALA", "SML", 15}, {"DORAHA", "DRH", 15}}};

// Ledger heads, by the names the series, the day's voucher and the payments post to.
enum Head : int {
    kDami = 101,
    kLabour,
    kLoading,
    kStitching,
    kDharam,
    kControl,
    kFreight,
    kLabourJForms,
    kLabourIForms,
    kRoundOff,
    kBank,
    kMarketFeePayable,
    kRdfPayable,
    kPidfPayable,
    kPurTaxPayable,
    kCancerFundPayable,
    kLabourPayable,
};
struct HeadName {
    int code;
    std::string_view name;
    int group; // FAGROUPS
};
constexpr std::array<HeadName, 17> kHeads = {{
    {kDami, "DAMI A/C", 72},
    {kLabour, "LABOUR A/C", 190},
    {kLoading, "LOADING A/C", 190},
    {kStitching, "STITCHING A/C", 190},
    {kDharam, "DHARAM A/C", 190},
    {kControl, "J-FORM / I-FORM CONTROL A/C", 190},
    {kFreight, "FREIGHT A/C", 66},
    {kLabourJForms, "LABOUR A/C (J-FORMS)", 190},
    {kLabourIForms, "LABOUR A/C (I-FORMS)", 190},
    {kRoundOff, "ROUND OFF", 66},
    {kBank, "STATE BANK OF INDIA, KHANNA", 20},
    {kMarketFeePayable, "MARKET FEE PAYABLE", 190},
    {kRdfPayable, "R.D.F. PAYABLE", 190},
    {kPidfPayable, "P.I.D.F. PAYABLE", 190},
    {kPurTaxPayable, "PURCHASE TAX PAYABLE", 190},
    {kCancerFundPayable, "CANCER FUND PAYABLE", 190},
    {kLabourPayable, "LABOUR PAYABLE", 190},
}};

// Each item's own heads: the firm's purchases on J-Forms and their levies.
enum ItemHead : int {
    kPurchase,
    kMarketFee,
    kRdf,
    kPidf,
    kPurTax,
    kCancerFund,
    kLabourSelf,
    kMalKhata
};
constexpr std::array<std::string_view, 8> kItemHeadPrefixes = {
    "PURCHASE ",       "MARKET FEE : ",  "R.D.F. : ",        "P.I.D.F. : ",
    "PURCHASE TAX : ", "CANCER FUND : ", "LABOUR (SELF) : ", ""};
int ItemHeadCode(std::size_t item, ItemHead head) {
    return 200 + static_cast<int>(item) * 10 + head;
}

constexpr std::array<std::string_view, 20> kFirstNames = {
    "GURMEET", "HARPAL",   "BALWINDER", "SUKHDEV",  "KARNAIL", "JASWANT",   "GURDEV",
    "HARBANS", "MOHINDER", "AMARJIT",   "PARAMJIT", "JAGJIT",  "KULDEEP",   "RANJIT",
    "DALJIT",  "BALDEV",   "NACHHATAR", "GURNAM",   "MALKIT",  "SUKHWINDER"};
constexpr std::array<std::string_view, 12> kVillages = {
    "RAIPUR", "BIJA",  "ISRU", "LALHERI", "RASULRA",   "BHADLA",
    "KHATRA", "ALOUR", "JARG", "KOTLA",   "GHUNGRALI", "ISHANPUR"};
constexpr std::array<std::string_view, 4> kAgencies = {"PUNGRAIN", "MARKFED", "PUNSUP", "FCI"};
constexpr std::array<std::string_view, 12> kMillers = {
    "GURU KRIPA", "BABA DEEP SINGH", "SHIVA",    "BANSAL", "GOYAL", "MITTAL", "JINDAL",
    "GARG",       "SINGLA",          "AGGARWAL", "KANSAL", "GUPTA"};
constexpr std::array<std::string_view, 3> kMillKinds = {"RICE MILLS", "TRADERS", "AGRO FOODS"};

std::string FarmerName(int index) {
    const auto size = static_cast<int>(kFirstNames.size());
    std::string name = std::string(kFirstNames[index % size]) + " SINGH S/O " +
                       std::string(kFirstNames[(index / size) % size]) + " SINGH";
    if (index >= size * size)
        name += " (" + std::to_string(index / (size * size) + 1) + ")";
    return name;
}

std::string BuyerName(int index) {
    if (index < static_cast<int>(kAgencies.size()))
        return std::string(kAgencies[index]);
    index -= static_cast<int>(kAgencies.size());
    const auto size = static_cast<int>(kMillers.size());
    std::string name = std::string(kMillers[index % size]) + " " +
                       std::string(kMillKinds[(index / size) % kMillKinds.size()]);
    if (index >= size * static_cast<int>(kMillKinds.size()))
        name +=
            " (" + std::to_string(index / (size * static_cast<int>(kMillKinds.size())) + 1) + ")";
    return name;
}

// Rows of one table written a few hundred to a statement, inside the caller's unit of work.
class RowBatch {
public:
    RowBatch(CompanyDb& db, std::string table, std::string columns)
        : db_(db),
          head_("INSERT INTO " + std::move(table) + " (" + std::move(columns) + ") VALUES ") {}

    void Add(const std::vector<std::string>& values) {
        sql_ += sql_.empty() ? head_ + "(" : ", (";
        for (std::size_t i = 0; i < values.size(); ++i)
            sql_ += (i ? ", " : "") + values[i];
        sql_ += ")";
        if (++rows_ == kRowsPerStatement)
            Flush();
    }
    void Flush() {
        if (rows_ == 0)
            return;
        db_.ExecuteSql(sql_);
        sql_.clear();
        rows_ = 0;
    }

private:
    static constexpr int kRowsPerStatement = 200;
    CompanyDb& db_;
    std::string head_;
    std::string sql_;
    int rows_ = 0;
};

std::string N(Amount value) {
    return value.ToPlainString();
}
std::string N(int value) {
    return std::to_string(value);
}

// The firm's masters, as its set-up screens would write them.
void WriteMasters(CompanyDb& db, const SeasonSize& size) {
    RowBatch markets(db, "MARKETMASTER", "MARKETID, MARKETNAME, STATION, STATE, SERIES");
    for (std::size_t m = 0; m < kMarkets.size(); ++m)
        markets.Add({N(static_cast<int>(m) + 1), SqlQuote(kMarkets[m].name),
                     SqlQuote(kMarkets[m].name), "'PUNJAB'", SqlQuote(kMarkets[m].series)});
    markets.Flush();

    RowBatch categories(db, "CTGMASTER", "CTGNO, CTGNAME");
    RowBatch items(db, "STKMASTER",
                   "QMCD, QMHD, QVATCTGNO, QUNIT, qLabourJF, qLabourIF, qDamiIF, qStitchIF, "
                   "qDharamIF, qLoadingIF, qDami, qLabour, qStitch, qLoading, qDamping, "
                   "qCommission, qMarketFee, qRDF, qPIDF, qPurTax, qCancerFund");
    for (std::size_t i = 0; i < kItems.size(); ++i) {
        const Item& item = kItems[i];
        const std::string code = N(static_cast<int>(i) + 1);
        categories.Add({code, SqlQuote(item.name)});
        std::vector<std::string> row = {code, SqlQuote(item.name), code, "'QTL'"};
        for (std::string_view rate :
             {item.labourJF, item.labourIF, item.damiIF, item.stitchIF, item.dharamIF,
              item.loadingIF, item.dami, item.labour, item.stitch, item.loading, item.damping,
              item.commission, item.marketFee, item.rdf, item.pidf, item.purTax, item.cancerFund})
            row.emplace_back(rate);
        items.Add(row);
    }
    categories.Flush();
    items.Flush();

    RowBatch accounts(db, "FAMASTER",
                      "MCD, MHD, MST, MSTATE, MBSHNO, MCELLNO, MAADHARNO, MPANNO, MBANKACNO, "
                      "MIFSCCODE, MBANKNAME");
    auto account = [&](int code, const std::string& name, std::string_view station, int group) {
        accounts.Add({N(code), SqlQuote(name), SqlQuote(station), "'PUNJAB'", N(group), "''", "''",
                      "''", "''", "''", "''"});
    };
    for (const HeadName& head : kHeads)
        account(head.code, std::string(head.name), "", head.group);
    for (std::size_t i = 0; i < kItems.size(); ++i)
        for (int head = kPurchase; head <= kMalKhata; ++head) {
            const std::string category(kItems[i].name);
            account(ItemHeadCode(i, static_cast<ItemHead>(head)),
                    head == kMalKhata ? category + " MAL KHATA"
                                      : std::string(kItemHeadPrefixes[head]) + category,
                    "",
                    head == kPurchase   ? 62
                    : head == kMalKhata ? 60
                                        : 66);
        }
    // Farmers with what Form-M asks of them: mobile, Aadhaar, PAN and bank account.
    for (int f = 0; f < size.farmers; ++f) {
        const std::string serial = std::to_string(100000 + f);
        accounts.Add({N(kFirstFarmerCode + f), SqlQuote(FarmerName(f)),
                      SqlQuote(kVillages[static_cast<std::size_t>(f) % kVillages.size()]),
                      "'PUNJAB'", "180", "'98140" + serial.substr(1) + "'",
                      "'4521 8812 " + serial.substr(2) + "'", "'ABQPS" + serial.substr(2) + "K'",
                      "'3012000" + serial + "'", "'PUNB0" + serial.substr(0, 6) + "'",
                      "'PUNJAB NATIONAL BANK'"});
    }
    account(kSelfCode, "SELF", "", 40);
    for (int b = 0; b + 1 < size.buyers; ++b)
        account(kFirstBuyerCode + b, BuyerName(b), "KHANNA", 40);
    accounts.Flush();
}

// What the agent owes on produce he buys for his own stock, as the module works it out;
// purchase tax ended with GST (1 July 2017), before any season generated here. Labour at the
// I-Form rate, as firm option 632 asks.
struct OwnPurchase {
    kivra::Levies levies;
    Amount labourSelf;
};
OwnPurchase LeviesOn(const Item& item, Amount amount, int bags) {
    return {kivra::LeviesOn(amount, {A(item.marketFee), A(item.rdf), A(item.pidf), A(item.purTax),
                                     A(item.cancerFund)},
                            false),
            RoundAmount(A(item.labourIF) * bags, 2)};
}

// A J-Form line waiting for the buyer's I-Form.
struct TakenLine {
    std::size_t item;
    int bags;
    Amount quantity;
    Amount rate;
    Amount amount;
};

class SeasonWriter {
public:
    SeasonWriter(CompanyDb& db, const SeasonSize& size)
        : db_(db), size_(size), jFormSeries_(desk::FindSeries(db, "JF", "")),
          iFormSeries_(desk::FindSeries(db, "IF", "")),
          mains_(
              db, "DOCMAIN",
              "DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, PARTYCODE, GROSSAMT, "
              "GRANDTOTAL, LABOUR, LOADING, ROUNDOFFAMT, CANCELLED, SALETYPE, VOUCHERID, MarketID, "
              "FormBookNo, FormNo, DamiAmt, StitchAmt, DharmadaAmt, UTRNo, UTRDate"),
          lines_(
              db, "DOCDATA",
              "DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, QUANTITY, QTYPERBOX, NOOFBOXES, PCS, "
              "TOTALWT, RATE, AMOUNT, STOCKFACTOR, JFACTOR, AddLessKgs, iMarketFeeRate, iRDFRate, "
              "iPIDFRate, iPurTaxRate, iLabourRateIF, iCancerFundRate, iMarketFeeAmt, iRDFAmt, "
              "iPIDFAmt, iPurTaxAmt, iLabourAmtIF, iCancerFundAmt"),
          charges_(db, "DOCCHARGEDATA", "DOCUMENTID, POSITION, CHARGEKEY, RATE, AMOUNT, HEADCODE"),
          ledger_(
              db, "FADATA",
              "VOUCHERID, DSRNO, DCD, DVCHDATE, DBOOK, DTRNTYPE, DAMT, NARRATIONID, DDOCUMENTID, "
              "DENTRYKIND"),
          vouchers_(db, "FADOCS", "VOUCHERID, ISAUTOVOUCHER, VCHDATE, TRNTYPE"),
          narrations_(db, "FANAR", "NARRATIONID, NARRATION") {
        if (jFormSeries_ == 0 || iFormSeries_ == 0)
            throw std::runtime_error("the mandi series JF and IF are not set up");
    }

    void WriteSeason() {
        for (int day = 0; day < size_.days; ++day)
            WriteDay(day, day + 1 == size_.days);
        for (RowBatch* batch : {&mains_, &lines_, &charges_, &ledger_, &vouchers_, &narrations_})
            batch->Flush();
        db_.ExecuteSql("UPDATE DOCCONFIG SET NEXTNUMBER=" + N(jFormNumber_ + 1) +
                       " WHERE SERIESID=" + N(jFormSeries_));
        db_.ExecuteSql("UPDATE DOCCONFIG SET NEXTNUMBER=" + N(iFormNumber_ + 1) +
                       " WHERE SERIESID=" + N(iFormSeries_));
    }

private:
    struct Posting {
        int account;
        Amount amount;
        std::string narration;
    };

    int Pick(int n) { return static_cast<int>(rng_() % static_cast<unsigned>(n)); }
    // An index of a table by the shares of its entries.
    template <class Table> std::size_t ByShare(const Table& table) {
        int roll = Pick(100);
        for (std::size_t i = 0; i < table.size(); ++i)
            if ((roll -= table[i].share) < 0)
                return i;
        return 0;
    }

    std::string Literal(qx::Date day) const { return db_.DateLiteral(day); }

    int Narration(const std::string& text) {
        auto [it, added] =
            narrationIds_.try_emplace(text, static_cast<int>(narrationIds_.size()) + 1);
        if (added)
            narrations_.Add({N(it->second), SqlQuote(text)});
        return it->second;
    }

    void Post(int voucherId, int serialNo, qx::Date day, std::string_view trnType,
              const Posting& posting) {
        ledger_.Add({N(voucherId), N(serialNo), N(posting.account), Literal(day), SqlQuote(trnType),
                     SqlQuote(trnType), N(posting.amount), N(Narration(posting.narration)), "0",
                     "''"});
    }
    void Register(int voucherId, qx::Date day, std::string_view trnType) {
        vouchers_.Add({N(voucherId), "-1", Literal(day), SqlQuote(trnType)});
    }

    // The next form of a mandi's book: a hundred forms to a book.
    std::pair<int, int> NextForm(std::map<std::size_t, int>& used, std::size_t market) {
        const int form = ++used[market];
        return {(form - 1) / 100 + 1, form};
    }
    void WriteMain(int documentId, bool jForm, int number, qx::Date day, int party,
                   const desk::DocumentTotals& totals, std::size_t market, std::pair<int, int> form,
                   Amount labour, Amount loading, Amount dami, Amount stitching, Amount dharmada,
                   const std::string& utr = {}) {
        mains_.Add({N(documentId),
                    jForm ? "'JF'" : "'IF'",
                    N(jForm ? jFormSeries_ : iFormSeries_),
                    N(number),
                    Literal(day),
                    N(party),
                    N(totals.gross),
                    N(totals.grandTotal),
                    N(labour),
                    N(loading),
                    N(totals.roundOff),
                    "0",
                    "1",
                    "0",
                    N(static_cast<int>(market) + 1),
                    N(form.first),
                    N(form.second),
                    N(dami),
                    N(stitching),
                    N(dharmada),
                    utr.empty() ? "NULL" : qx::SqlQuote(utr),
                    utr.empty() ? "NULL" : Literal(day)});
    }

    void WriteDay(int dayIndex, bool lastDay) {
        const qx::Date day = kSeasonStart.AddDays(dayIndex);
        // Lines sold to each buyer in each mandi, taken over by his I-Form of the day.
        std::map<std::pair<std::size_t, int>, std::vector<TakenLine>> taken;
        for (int j = 0; j < size_.jFormsPerDay; ++j)
            WriteJForm(day, lastDay ? nullptr : &taken);
        for (const auto& [marketAndBuyer, lines] : taken)
            WriteIForm(day, marketAndBuyer.first, marketAndBuyer.second, lines);
    }

    void WriteJForm(qx::Date day,
                    std::map<std::pair<std::size_t, int>, std::vector<TakenLine>>* taken) {
        const int documentId = ++documentId_;
        const std::size_t market = ByShare(kMarkets);
        const std::size_t itemIndex = ByShare(kItems);
        const Item& item = kItems[itemIndex];
        const int farmer = kFirstFarmerCode + Pick(size_.farmers);
        const auto form = NextForm(jForms_, market);
        Amount gross;
        int bags = 0;
        for (int refNo = 1; refNo <= size_.linesPerJForm; ++refNo) {
            const bool self = Pick(10) == 0;
            const int buyer = self ? kSelfCode : kFirstBuyerCode + Pick(size_.buyers - 1);
            TakenLine line{
                itemIndex, 20 + Pick(281), {}, Amount::FromInt(item.rate + Pick(101) - 50), {}};
            if (item.kgPerBag == "37.5")
                line.bags += line.bags % 2; // whole kilograms
            line.quantity = Amount::FromInt(line.bags) * A(item.kgPerBag) / Amount::FromInt(100);
            line.amount = RoundAmount(line.quantity * line.rate, 2);
            gross += line.amount;
            bags += line.bags;
            const OwnPurchase owed = self ? LeviesOn(item, line.amount, line.bags) : OwnPurchase{};
            if (!self && taken)
                (*taken)[{market, buyer}].push_back(line);
            const auto rate = [self](std::string_view text) {
                return self ? std::string(text) : "0";
            };
            lines_.Add({N(documentId),
                        N(refNo),
                        N(static_cast<int>(itemIndex) + 1),
                        N(buyer),
                        N(line.quantity),
                        std::string(item.kgPerBag),
                        N(line.bags),
                        "0",
                        N(line.quantity),
                        N(line.rate),
                        N(line.amount),
                        self ? "1" : "0",
                        self ? "0" : "1",
                        "0",
                        rate(item.marketFee),
                        rate(item.rdf),
                        rate(item.pidf),
                        rate(item.purTax),
                        rate(item.labourIF),
                        rate(item.cancerFund),
                        N(owed.levies.marketFee),
                        N(owed.levies.rdf),
                        N(owed.levies.pidf),
                        "0",
                        N(owed.labourSelf),
                        N(owed.levies.cancerFund)});
        }
        const Amount labourRate = A(item.labourJF);
        const auto docTotals = desk::ComputeTotals(gross, Amount::FromInt(bags),
                                                   {{labourRate, ChargeBasis::PerBag, -1}});
        // The farmer is paid by bank transfer the same day; Form-M reports its UTR.
        const int payment = ++voucherId_;
        const std::string utr = "PUNBH" + day.Format("yyyyMMdd") + std::to_string(payment);
        WriteMain(documentId, true, ++jFormNumber_, day, farmer, docTotals, market, form,
                  docTotals.charges[0], {}, {}, {}, {}, utr);
        charges_.Add({N(documentId), "1", "'LABOUR'", N(labourRate), N(docTotals.charges[0]), "0"});

        Post(payment, 1, day, "BP", {farmer, docTotals.grandTotal, "Paid by NEFT, UTR " + utr});
        Post(payment, 2, day, "BP", {kBank, -docTotals.grandTotal, "Paid by NEFT, UTR " + utr});
        Register(payment, day, "BP");
    }

    void WriteIForm(qx::Date day, std::size_t market, int buyer,
                    const std::vector<TakenLine>& taken) {
        const int documentId = ++documentId_;
        const auto form = NextForm(iForms_, market);
        Amount gross;
        int bags = 0;
        int refNo = 0;
        for (const TakenLine& line : taken) {
            const Item& item = kItems[line.item];
            lines_.Add({N(documentId),
                        N(++refNo),
                        N(static_cast<int>(line.item) + 1),
                        N(buyer),
                        N(line.quantity),
                        std::string(item.kgPerBag),
                        N(line.bags),
                        "0",
                        N(line.quantity),
                        N(line.rate),
                        N(line.amount),
                        "0",
                        "-1",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0",
                        "0"});
            gross += line.amount;
            bags += line.bags;
        }
        // The buyer's charges at the first line's item's I-Form rates, in the series' order.
        const Item& first = kItems[taken.front().item];
        const std::array<std::pair<std::string_view, std::string_view>, 5> rates = {
            {{"DAMI", first.damiIF},
             {"LABOUR", first.labourIF},
             {"LOADING", first.loadingIF},
             {"STITCHING", first.stitchIF},
             {"DHARMADA", first.dharamIF}}};
        std::vector<desk::ChargeLine> charges;
        for (const auto& [key, rate] : rates)
            charges.push_back(
                {A(rate),
                 key == "DAMI" || key == "DHARMADA" ? ChargeBasis::Percent : ChargeBasis::PerBag,
                 1});
        const auto docTotals = desk::ComputeTotals(gross, Amount::FromInt(bags), charges);
        const auto& amounts = docTotals.charges;
        WriteMain(documentId, false, ++iFormNumber_, day, buyer, docTotals, market, form,
                  amounts[1], amounts[2], amounts[0], amounts[3], amounts[4]);
        for (std::size_t i = 0; i < rates.size(); ++i)
            charges_.Add({N(documentId), N(static_cast<int>(i) + 1), SqlQuote(rates[i].first),
                          std::string(rates[i].second), N(amounts[i]), "0"});
    }

    CompanyDb& db_;
    SeasonSize size_;
    std::int32_t jFormSeries_;
    std::int32_t iFormSeries_;
    RowBatch mains_, lines_, charges_, ledger_, vouchers_, narrations_;
    std::mt19937 rng_{20241001};
    int documentId_ = 0;
    int jFormNumber_ = 0;
    int iFormNumber_ = 0;
    int voucherId_ = 0;
    std::map<std::size_t, int> jForms_, iForms_; // forms used so far, by mandi
    std::map<std::string, int> narrationIds_;
};

// The local and outside purchases post each item's value to the item's purchase head.
void WritePurchasePostings(CompanyDb& db) {
    RowBatch postings(db, "VATCATEGORYTAXRATES", "SERIESID, VATCTGNO, SALEPOSTINGCODE");
    for (const char* code : {"PL", "POU"})
        for (std::size_t i = 0; i < kItems.size(); ++i)
            postings.Add({N(desk::FindSeries(db, code, "")), N(static_cast<int>(i) + 1),
                          N(ItemHeadCode(i, kPurchase))});
    postings.Flush();
}

std::filesystem::path SeriesFile() {
    return std::filesystem::path(QX_DATA_DIR) / "demo" / "series.json";
}

std::int64_t Count(CompanyDb& db, const std::string& sql) {
    auto rows = db.OpenRecordset(sql);
    return rows->EndOfRows() ? 0 : rows->Field(0).AsLong();
}

// Each day's consolidated "IJF" voucher and its pending J-Forms, kept by the module itself, as
// a save of one of the day's forms keeps them.
void PostDays(const std::filesystem::path& path, const SeasonSize& size) {
    MandiDesk desk(path);
    CompanyDb& db = desk.Db();
    kivra::DailyVoucher days(*desk.module.Context(), db, true, kivra::DayColumns::Of(db));
    Transaction unit(db);
    for (int day = 0; day < size.days; ++day) {
        days.Post(kSeasonStart.AddDays(day));
        kivra::KeepPendingOf(db, kSeasonStart.AddDays(day));
    }
    unit.Commit();
    if (!desk.frontend.Transcript().empty())
        throw std::runtime_error("posting the season's days said: " + desk.FirstMessage());
}

// What the season must come to: every voucher balances, and the control head of the last day,
// whose J-Forms are the only ones still pending, carries exactly their goods.
void CheckSeason(CompanyDb& db, const SeasonSize& size) {
    if (Count(db, "SELECT COUNT(*) FROM (SELECT VOUCHERID FROM FADATA GROUP BY VOUCHERID "
                  "HAVING ABS(SUM(DAMT))>=0.005) q") != 0)
        throw std::runtime_error("a voucher of the generated season does not balance");
    const qx::Date lastDay = kSeasonStart.AddDays(size.days - 1);
    auto pendingDays = db.OpenRecordset(
        "SELECT b.DocDate FROM DocData a INNER JOIN DocMain b ON a.DocumentID=b.DocumentID "
        "WHERE a.JFactor<>0 GROUP BY b.DocDate HAVING SUM(a.Quantity*a.JFactor)<>0");
    if (pendingDays->EndOfRows() || pendingDays->Field(0).AsDate() != lastDay ||
        (pendingDays->MoveNext(), !pendingDays->EndOfRows()))
        throw std::runtime_error("the generated season's pending J-Forms are not the last day's");
    const Value pending = db.LookupValue("DOCDATA", "SUM(AMOUNT*JFACTOR)", "");
    const Value control = db.LookupValue("FADATA", "SUM(DAMT)",
                                         "DCD=" + N(kControl) +
                                             " AND DVCHDATE=" + db.DateLiteral(lastDay));
    if (RoundAmount(pending.AsAmount(), 2) != RoundAmount(control.AsAmount(), 2))
        throw std::runtime_error("the control head carries " + control.AsText() +
                                 ", the pending goods are " + pending.AsText());
}

} // namespace

const std::filesystem::path& RunFolder() {
    struct Folder {
        Folder() {
            std::random_device random;
            path =
                std::filesystem::temp_directory_path() / ("qx-bench-" + std::to_string(random()));
            std::filesystem::create_directories(path);
        }
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        std::filesystem::path path;
    };
    static const Folder folder;
    return folder.path;
}

void MakeSeasonCompany(const std::filesystem::path& path, const SeasonSize& size) {
    desk::Session session;
    session.Create(path, "Guru Nanak Trading Company, Khanna (season)");
    session.SetFirmSetting("FirmProperties", "*KivraMenu*");
    session.SetFirmSetting("ItemForms", "kivrarates=Kivra Rates");
    session.SetFirmSetting("DocExtensions", "ckivradoc");
    // Several mandis; labour on I-Forms; J-Form lines of different rates kept apart.
    for (int option : {676, 632, 637})
        session.SetOption(option, "Yes");
    CompanyDb& db = session.Database();
    kivra::CheckMarketTable(db);
    kivra::CheckKivraFields(db);
    kivra::CheckUtrFields(db);
    // The item master's rate columns, as the "Kivra Rates" screen makes sure of them.
    db.AddFields("STKMASTER", "Decimal(8,4)", {"qLoadingIF"});
    db.AddFields("STKMASTER", "Decimal(12,4)",
                 {"qLabourJF", "qDamiIF", "qStitchIF", "qDharamIF", "qDami", "qLabour", "qStitch",
                  "qLoading", "qDamping", "qCommission"});
    db.AddFields("STKMASTER", "int", {"qVATRateCode"});

    {
        Transaction unit(db);
        WriteMasters(db, size);
        unit.Commit();
    }
    std::ifstream seriesFile(SeriesFile());
    if (!seriesFile)
        throw std::runtime_error(SeriesFile().string() + " cannot be read");
    for (const std::string& code :
         desk::ImportSeries(db, nlohmann::ordered_json::parse(seriesFile)))
        desk::AddSeriesFields(db, desk::LoadSeries(db, desk::FindSeries(db, code, "")));

    {
        SeasonWriter writer(db, size);
        Transaction unit(db);
        WritePurchasePostings(db);
        writer.WriteSeason();
        unit.Commit();
    }
    session.Close();
    PostDays(path, size);
    desk::Session checked;
    checked.Open(path);
    CheckSeason(checked.Database(), size);
}

namespace {

std::filesystem::path Made(std::filesystem::path company, const SeasonSize& size) {
    if (std::filesystem::exists(company))
        return company;
    std::cerr << "Making a season of " << size.days << " days of " << size.jFormsPerDay
              << " J-Forms at " << company.string() << " ..." << std::flush;
    const auto start = std::chrono::steady_clock::now();
    MakeSeasonCompany(company, size);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::cerr << " " << took.count() << " s\n";
    return company;
}

} // namespace

const std::filesystem::path& SeasonCompany() {
    static const std::filesystem::path path = [] {
        const char* named = std::getenv("QX_BENCH_COMPANY");
        return Made(named && *named ? named : RunFolder() / "season.kdb", SeasonSize{});
    }();
    return path;
}

std::filesystem::path SeasonCompany(const SeasonSize& size) {
    const SeasonSize standard;
    if (size.days == standard.days && size.jFormsPerDay == standard.jFormsPerDay)
        return SeasonCompany();
    return Made(RunFolder() / ("season-" + std::to_string(size.days) + "x" +
                               std::to_string(size.jFormsPerDay) + ".kdb"),
                size);
}

std::filesystem::path SeasonCompanyCopy(const std::string& name, const SeasonSize& size) {
    const auto copy = RunFolder() / (name + ".kdb");
    std::filesystem::copy_file(SeasonCompany(size), copy,
                               std::filesystem::copy_options::overwrite_existing);
    return copy;
}

} // namespace qx::bench
