// The desk keeps its hold on the company while its file dialogs list the company's folder.
// SQLite's locks are POSIX advisory locks, which a process loses when it closes any descriptor
// of the file: a dialog that opened the company file to guess its type would leave the desk
// unlocked, the next program would take the write-ahead log from under it, and what the desk
// saved afterwards would be gone once the desk was killed.
#include "support/Desk.h"

#include "desk/cli/Commands.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <sstream>

extern char** environ;

namespace {

using namespace std::chrono_literals;

// The desk run by CompanyLocksDriver, talked to through its standard input and output.
class DeskProcess {
public:
    explicit DeskProcess(const std::filesystem::path& company) {
        int toDesk[2], fromDesk[2];
        if (pipe(toDesk) != 0 || pipe(fromDesk) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, toDesk[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, fromDesk[1], STDOUT_FILENO);
        for (int fd : {toDesk[0], toDesk[1], fromDesk[0], fromDesk[1]})
            posix_spawn_file_actions_addclose(&actions, fd);
        const std::string program = QX_LOCKS_DRIVER, file = company.string();
        char* argv[] = {const_cast<char*>(program.c_str()), const_cast<char*>(file.c_str()),
                        nullptr};
        if (posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv, environ) != 0)
            pid_ = 0;
        posix_spawn_file_actions_destroy(&actions);
        close(toDesk[0]);
        close(fromDesk[1]);
        in_ = toDesk[1];
        out_ = fromDesk[0];
    }
    ~DeskProcess() {
        Kill();
        close(in_);
        close(out_);
    }

    // The next line the desk says; empty when it says nothing in time.
    std::string ReadLine(std::chrono::seconds timeout) {
        const auto until = std::chrono::steady_clock::now() + timeout;
        while (buffer_.find('\n') == std::string::npos) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                until - std::chrono::steady_clock::now());
            pollfd ready{out_, POLLIN, 0};
            if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0)
                return {};
            char chunk[256];
            const ssize_t got = read(out_, chunk, sizeof chunk);
            if (got <= 0)
                return {};
            buffer_.append(chunk, static_cast<std::size_t>(got));
        }
        const auto end = buffer_.find('\n');
        std::string line = buffer_.substr(0, end);
        buffer_.erase(0, end + 1);
        return line;
    }
    void Say(const std::string& line) {
        const std::string text = line + "\n";
        EXPECT_EQ(write(in_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    // As a power cut or the task manager would: nothing of the desk's own runs.
    void Kill() {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

private:
    pid_t pid_ = 0;
    int in_ = -1;
    int out_ = -1;
    std::string buffer_;
};

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

    DeskProcess desk(company);
    ASSERT_EQ(desk.ReadLine(120s), "dialogs done");
    // Another program opens the company and closes it while the desk has it open.
    Sql(company, "SELECT COUNT(*) FROM DOCMAIN");
    desk.Say("save");
    ASSERT_EQ(desk.ReadLine(120s), "saved");
    desk.Kill();

    EXPECT_EQ(Sql(company, "SELECT COUNT(*) FROM DOCMAIN WHERE FORMNO=150"), "COUNT(*)\n1\n")
        << "the J-Form the desk saved is in the company";
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "printed.pdf"));
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "saved.pdf"));
}

} // namespace
