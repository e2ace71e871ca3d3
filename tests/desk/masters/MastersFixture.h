#pragma once
// A company with the desk's own masters in its menu and no real module: only small test
// modules that offer screens for an item, plugged in as the desk plugs modules in.

#include "support/Desk.h"

#include "desk/masters/HostMasters.h"
#include "desk/masters/TableMaster.h"

#include "host/Text.h"

#include <utility>
#include <vector>

namespace qx::test {

// A module that offers one screen by name; it remembers the screens it handed out.
class ScreenModule : public IModule {
public:
    explicit ScreenModule(std::string offers) : offers_(std::move(offers)) {}
    void Init(HostApp&) override {}
    void Terminate() override {}
    std::string ID() const override { return "Test" + offers_; }
    std::string Description() const override { return "offers " + offers_; }
    std::shared_ptr<Object> GetForm(const std::string& name) override {
        if (!EqualsNoCase(name, offers_))
            return nullptr;
        handedOut.push_back(std::make_shared<ui::Screen>("frm" + offers_, offers_));
        return handedOut.back();
    }
    bool RunProc(const std::string&, const std::string&) override { return false; }
    Object& Obj() override { return *this; }

    std::vector<std::shared_ptr<ui::Screen>> handedOut;

private:
    std::string offers_;
};

class MastersFixture : public DeskFixtureBase {
protected:
    void SetUp() override {
        path = MakeCompany(folder, "");
        app.PlugModule(noScreens);
        app.PlugModule(rates);
        desk::RegisterHostMasters(app);
        app.OpenCompany(path);
    }
    // The desk goes before the modules it plugged in.
    void TearDown() override { app.Shutdown(); }

    desk::TableMaster& Open(const std::string& key) {
        app.ClickMenu(key);
        auto screen = std::dynamic_pointer_cast<desk::TableMaster>(app.OpenScreens().back());
        if (!screen)
            throw std::logic_error(key + " opened no master");
        return *screen;
    }
    static ui::Grid& GridOf(desk::TableMaster& master) { return master.Get<ui::Grid>("Grid"); }

    // Types a record into the empty last row, cell by cell, and leaves the row as a user does
    // when he goes on to the next one. False when a cell or the row was refused.
    static bool TypeRow(desk::TableMaster& master,
                        const std::vector<std::pair<std::string, std::string>>& cells) {
        auto& grid = GridOf(master);
        int row = grid.Rows() - 1;
        for (const auto& [field, text] : cells) {
            if (!grid.MoveTo(row, master.ColumnOf(field)))
                return false;
            grid.Type(text);
        }
        return grid.MoveTo(grid.Rows() - 1, master.ColumnOf(cells.front().first));
    }

    // Types into one cell and leaves it without leaving the row. False when refused.
    static bool TypeCell(desk::TableMaster& master, int row, const std::string& field,
                         const std::string& text) {
        auto& grid = GridOf(master);
        if (!grid.MoveTo(row, master.ColumnOf(field)))
            return false;
        grid.Type(text);
        return grid.Commit();
    }

    static const std::string& Cell(desk::TableMaster& master, int row, const std::string& field) {
        return GridOf(master).TextMatrix(row, master.ColumnOf(field));
    }


    // The one message shown since the last call, which must be a warning; cleared.
    std::string TakeWarning() {
        auto transcript = frontend.Transcript();
        frontend.ClearTranscript();
        if (transcript.size() != 1) {
            ADD_FAILURE() << transcript.size() << " messages shown instead of one";
            return {};
        }
        EXPECT_EQ(transcript[0].style, "W") << transcript[0].prompt;
        return transcript[0].prompt;
    }

    ScreenModule noScreens{"nothing"};
    ScreenModule rates{"itemrates"};
};

} // namespace qx::test
