#pragma once
// A company with the Kivra module plugged in, an account, item categories and the VAT classes
// the item heads take. Screens are shown modally, as the host shows them, with the user's
// actions scripted.

#include "support/DeskFixture.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qx::test {

class ItemMastersFixture : public DeskFixture {
protected:
    void SetUp() override {
        OpenWithModule();
        AddAccount(500, "CASH", 10);
        Db().ExecuteSql("INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'FOOD GRAINS')");
        Db().ExecuteSql("INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (2, 'OILS')");
        // Sales classes carry the indicator S, purchase classes P, the others none.
        for (int no : {101, 104, 105, 106, 111, 120, 130, 132, 137, 140, 805, 806})
            AddVatClass(no, "S");
        for (int no : {301, 302, 305, 307, 308, 310, 320, 330, 331, 336, 340, 390})
            AddVatClass(no, "P");
        for (int no : {509, 510, 511, 512, 601, 602, 603, 610}) AddVatClass(no, "");
    }

    void AddVatClass(int no, const std::string& salePurchase) {
        auto n = std::to_string(no);
        Db().ExecuteSql(
            "INSERT INTO VATCLASSES (VATCLASSNO, VATCLASSNAME, PRESSHEAD, SPO) VALUES (" + n +
            ", 'Class " + n + "', 'P" + n + "', " + SqlQuote(salePurchase) + ")");
    }
    void AddItem(int code, const std::string& name, int category = 1) {
        Db().ExecuteSql("INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO) VALUES (" +
                        std::to_string(code) + ", " + SqlQuote(name) + ", " +
                        std::to_string(category) + ")");
    }
    void AddAccount(int code, const std::string& name, int group) {
        Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MBSHNO) VALUES (" + std::to_string(code) +
                        ", " + SqlQuote(name) + ", " + std::to_string(group) + ")");
    }

    // True when the screen closed accepted.
    bool ShowModal(ui::Screen& screen, std::function<void(ui::Screen&)> user) {
        frontend.QueueModal(std::move(user));
        return app.ShowModal(screen);
    }

    long Count(const std::string& table, const std::string& condition = "") {
        return Db().LookupValue(table, "COUNT(*)", condition).AsLong();
    }

    struct Head {
        long code, group, tradingLink;
        std::string salePurchase;
    };
    // Heads without a sub-type, by name.
    std::map<std::string, Head> Heads() {
        std::map<std::string, Head> heads;
        auto rows = Db().OpenRecordset("SELECT * FROM FAMASTER WHERE MST=''");
        for (; !rows->EndOfRows(); rows->MoveNext())
            heads[rows->Field("MHD").AsText()] = {
                rows->Field("MCD").AsLong(), rows->Field("MBSHNO").AsLong(),
                rows->Field("MTRDNO").AsLong(), rows->Field("MSPO").AsText()};
        return heads;
    }

    // The VAT classes of a head, in order.
    std::vector<long> ClassesOf(long code) {
        std::vector<long> classes;
        for (const auto& vatCode : Rows("SELECT VATCODE FROM VATMASTER WHERE CODE=" +
                                        std::to_string(code) + " ORDER BY VATCODE"))
            classes.push_back(std::stol(vatCode));
        return classes;
    }
};

} // namespace qx::test
