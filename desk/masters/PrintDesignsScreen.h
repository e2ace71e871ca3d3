#pragma once
// "Print Designs": the firm's named sections of text that reports print above and below their
// pages (its name, address and licence lines), chosen from a list and edited in several lines.
// F5 starts a new section, F10 saves the one shown, F3 deletes it, Esc closes.

#include "desk/core/DeskApp.h"
#include "desk/core/PrintDesigns.h"

namespace qx::desk {

class PrintDesignsScreen : public ui::Screen {
public:
    explicit PrintDesignsScreen(DeskApp& app);

private:
    void Load() override;
    void FirstActivate() override;
    void Fill(const std::string& design, const std::string& section);
    void ShowChosen();
    void Save();
    void Delete();

    DeskApp& app_;
    ui::ComboBox& list_;
    ui::TextBox& design_;
    ui::TextBox& section_;
    ui::TextBox& text_;
    ui::ButtonBar& bar_;
    std::vector<DesignText> designs_;
};

} // namespace qx::desk
