#pragma once
// The books as the accountant reads them, each a print job built from the host's ledger
// (FADATA rows, their narrations in FANAR, accounts in FAMASTER under the groups of FAGROUPS):
// a party's ledger, the day book, the trial balance and the outstanding list.
//
// What every one of them holds to:
// - Opening entries (book or transaction type "0B") are an account's opening whatever their
//   date: a ledger counts them in its opening balance, never as a row of its period, and a
//   balance as on a day counts them even when dated after it. The day book shows them on their
//   day, as the vouchers they are.
// - Memorandum entries (book "MEM") are not in the accounts and are left out of every figure.
// - Entries of one day stand in the order they were posted: by voucher, then row.
// - Figures are the company's amounts, exact to four decimals and shown with two, grouped the
//   Indian way; a balance is shown with its side: "1,23,456.00 Dr", "300.00 Cr".

#include "host/Amount.h"
#include "host/CompanyDb.h"
#include "host/HostUi.h"
#include "host/PrintJob.h"

#include <string>
#include <string_view>

namespace qx::desk {

// The account of that name, letter case and blanks around it aside; throws
// std::runtime_error saying there is none.
ChosenAccount FindAccount(CompanyDb& db, std::string_view name);

// The party's ledger of the period: its opening balance, each entry with date, book, voucher
// number, narration, debit or credit and the balance after it, the totals and the closing
// balance.
PrintJob PartyLedgerJob(CompanyDb& db, const ChosenAccount& party, const Period& period);

// Every voucher of the period, row by row under its date, number and book, with the debit and
// credit totals of the period.
PrintJob DayBookJob(CompanyDb& db, const Period& period);

// Every account's balance as on the day, group by group (in the chart's order), in the Dr or
// the Cr column, with each group's sub totals and the grand totals; accounts whose balance is
// nil are left out.
PrintJob TrialBalanceJob(CompanyDb& db, Date asOn);

// The parties of the sundry debtors and sundry creditors with a balance as on the day, with
// the day of their last entry and the days since it.
PrintJob OutstandingJob(CompanyDb& db, Date asOn);

} // namespace qx::desk
