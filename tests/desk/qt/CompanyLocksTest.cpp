// The desk keeps its hold on the company while its file dialogs list the company's folder.
// SQLite's locks are POSIX advisory locks, which a process loses when it closes any descriptor
// of the file: a dialog that opened the company file to guess its type would leave the desk
// unlocked, the next program would take the write-ahead log from under it, and what the desk
// saved afterwards would be gone once the desk was killed.
#include "support/Desk.h"

#include "desk/cli/Commands.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string Sql(const std::filesystem::path& company, const std::string& statement) {
    std::ostringstream out, err;
    EXPECT_EQ(qx::cli::Run({"sql", company.string(), statement}, out, err), 0) << err.str();
    return out.str();
}

TEST(CompanyLocks, TheDeskKeepsItsSavesAfterItsFileDialogsListedTheCompanysFolder) {
    qx::test::TempFolder folder;
    const auto company = folder.Path() / "demo.kdb";
    std::ostringstream out, err;
    ASSERT_EQ(qx::cli::Run({"demo", company.string()}, out, err), 0) << err.str();

    const auto said = folder.Path() / "said.txt";
    std::system(("timeout -s KILL 240 '" + std::string(QX_LOCKS_DRIVER) + "' '" +
                 company.string() + "' > '" + said.string() + "'").c_str());
    ASSERT_EQ(qx::test::FileBytes(said), "saved\n");
    EXPECT_EQ(Sql(company, "SELECT COUNT(*) FROM DOCMAIN WHERE FORMNO=150"), "COUNT(*)\n1\n")
        << "the J-Form the desk saved is in the company";
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "printed.pdf"));
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "saved.pdf"));
}

} // namespace
