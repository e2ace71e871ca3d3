#pragma once
// The open document as a module's extension sees it: its series, its identity, the values
// the screen holds, the amounts the voucher posts, and the extensions it raises its events
// on. The entry screen (DocumentScreen) drives it.

#include "Series.h"

#include "desk/core/DeskApp.h"
#include "host/HostDocument.h"

#include <map>
#include <vector>

namespace qx::desk {

class DeskDocument : public HostDocument {
public:
    DeskDocument(DeskApp& app, DocumentForm& form) : app_(app), form_(form) {}

    // The engine's side.
    void SetSeries(Series series) { series_ = std::move(series); }
    const Series& CurrentSeries() const { return series_; }
    // A fresh document: never saved, no party, no main fields.
    void Reset();
    void SetIdentity(std::int32_t documentId, bool isNew);
    void SetParty(std::int32_t partyId) { partyId_ = partyId; }
    // The voucher about to be posted: the party's amount and the voucher's fields.
    void BeginVoucher(Amount partyAmount, PropertyBag fields) {
        postingValues_ = {{kPartyPosting, partyAmount}};
        voucherFields_ = std::move(fields);
    }
    // Whether a row of the item grid is a line of the document: it holds an item.
    bool IsLine(int row) const;
    // A line an extension added while saving (kHiddenRowMark): saved, but not part of what the
    // document shows, bills or posts.
    bool IsHiddenLine(int row) const;
    // Raises SelectSeries: the series is selected with what the header's look-up boxes hold
    // (the records modules chose for it).
    void SelectSeries();
    // Raises SelectSeries again when what those boxes hold is no longer what it was raised
    // with, so that an extension that keeps it at series selection keeps the document's.
    void KeepSeriesSelection();
    // Raises an event on every subscribed extension, in the order they subscribed.
    template <class F> void Raise(F&& raise) {
        auto listeners = listeners_; // a handler may unsubscribe while the event runs
        for (DocumentEvents* listener : listeners)
            raise(*listener);
    }
    // Raises an event that can refuse the action: once a handler sets cancel, it stays set.
    // True when refused.
    template <class F> bool RaiseCancellable(F&& raise) {
        bool refused = false;
        Raise([&](DocumentEvents& listener) {
            bool cancel = refused;
            raise(listener, cancel);
            refused = refused || cancel;
        });
        return refused;
    }

    // HostDocument
    DocumentForm& Form() override { return form_; }
    CompanyDb& Database() override { return app_.DeskSession().Database(); }
    Date DocDate() const override;
    std::string DocType() const override { return series_.docType; }
    std::string SeriesProperties() const override { return series_.properties; }
    const PropertyBag& SeriesInfo() const override { return series_.info; }
    std::int32_t SeriesID() const override { return series_.id; }
    std::string SeriesCode() const override { return series_.code; }
    PropertyBag& MainFields() override { return mainFields_; }
    std::int32_t DocumentID() const override { return documentId_; }
    bool IsNewDocument() const override { return isNew_; }
    Amount DocumentAmount() const override;
    std::int32_t PartyID() const override { return partyId_; }
    // The desk's documents carry no GST of their own.
    bool GstApplicable() const override { return false; }
    void CalcTaxAmt() override;
    Amount PostingValue(int index) const override;
    void SetPostingValue(int index, Amount value) override;
    PropertyBag& VoucherFields() override { return voucherFields_; }
    void Subscribe(DocumentEvents& listener) override;
    void Unsubscribe(DocumentEvents& listener) override;

private:
    std::vector<std::int64_t> LookupChoices() const;

    DeskApp& app_;
    DocumentForm& form_;
    Series series_;
    PropertyBag mainFields_;
    std::int32_t documentId_ = 0;
    bool isNew_ = true;
    std::int32_t partyId_ = 0;
    std::vector<std::int64_t> selectedWith_; // the look-up boxes' choices at SelectSeries
    std::map<int, Amount> postingValues_;
    PropertyBag voucherFields_;
    std::vector<DocumentEvents*> listeners_;
};

} // namespace qx::desk
