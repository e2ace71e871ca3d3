#pragma once
// The interest statement of a party's account over a period, worked out from its ledger rows:
// Method 1 charges the running balance for the days it stood, Method 2 ("Zimidar") charges each
// entry's own amount from its date to the end of the period. The two interest screens differ
// in the year they count, the book of the opening row, what the grace interest is reckoned on
// and which ledger rows they read; the rules of each stand here, apart from any screen, so that
// the screens and `qx report` give one statement.

#include "host/Amount.h"
#include "host/Date.h"
#include "host/HostUi.h"

#include <optional>
#include <string>
#include <vector>

namespace kivra {

enum class InterestScreen { First, Second }; // "Interest Calculations", "Interest Calculations-2"
enum class InterestMethod { RunningBalance, Zimidar }; // Method 1, Method 2
enum class GraceOn { Credit, Debit };

struct InterestTerms {
    InterestScreen screen = InterestScreen::First;
    InterestMethod method = InterestMethod::RunningBalance;
    qx::Amount rate;     // percent a year
    int creditDays = 0;  // the grace days
    GraceOn graceOn = GraceOn::Credit;
    int totalDays = 0;   // the second screen's year

    // The days a year of interest counts: 365 (Method 1) or 360 (Method 2) on the first screen,
    // the Total Days on the second.
    int YearLength() const;
    // Recalculate counts 360 on the first screen whatever the method.
    int RecalculateYear() const;
};

// A posting of the party's ledger, as the statement reads it.
struct LedgerEntry {
    qx::Date date;
    std::string book;
    std::string narration;
    qx::Amount amount; // positive debit, negative credit
};

struct LedgerExtract {
    qx::Amount opening;
    std::vector<LedgerEntry> entries; // by date
};

// A line of the statement: the opening row (serial 0) or an entry. An empty optional is a blank
// cell.
struct StatementLine {
    int serial = 0;
    qx::Date date;
    std::string book;
    std::string narration;
    std::optional<qx::Amount> debit, credit;
    qx::Amount balance; // "C.Bal", after the line
    std::optional<qx::Amount> days, rate;
    std::optional<qx::Amount> drInterest, crInterest, interest;
};

struct StatementTotals {
    qx::Amount debit, credit, drInterest, crInterest;
    qx::Amount interest;      // net of the "Interest" column
    qx::Amount graceBase;     // the entries the grace days are allowed on
    qx::Amount graceInterest; // the interest those grace days are worth
    qx::Amount afterGrace;    // the interest, shrunk towards 0 by the grace interest
    qx::Amount closing;       // the closing running balance
    qx::Amount afterInterest; // the closing balance with the interest after grace
};

struct InterestStatement {
    InterestTerms terms;
    qx::Period period;
    std::vector<StatementLine> lines; // the opening row first
    StatementTotals totals;
};

// Half to even, two places, of amount x rate / 100 / year x days: the product in fixed point,
// the rest in double precision, as the host computes interest.
qx::Amount InterestOn(qx::Amount amount, qx::Amount rate, int yearLength, qx::Amount days);

// The ledger's texts move into the statement's lines.
InterestStatement WorkOutInterest(const InterestTerms& terms, const qx::Period& period, LedgerExtract ledger);
// After the user edited the Days and Rate of entries: each entry's Dr.Intr or Cr.Intr again
// from its own Days and Rate, and the totals.
void Recalculate(InterestStatement& statement);

} // namespace kivra
