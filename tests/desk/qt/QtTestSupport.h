#pragma once
// What the desktop's tests share: the folder for files a person looks at, and poppler's
// tools to read back the PDF files the renderer writes.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace qx::test {

// $QX_TEST_OUTPUT (made when missing): screenshots and PDF files kept for a person to look at.
inline std::filesystem::path OutputFolder() {
    const char* folder = std::getenv("QX_TEST_OUTPUT");
    std::filesystem::path path = folder && *folder ? folder : "test-output";
    std::filesystem::create_directories(path);
    return path;
}

// Runs a command and returns what it printed; the test fails when the command fails.
inline std::string RunTool(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), pclose);
    if (!pipe) {
        ADD_FAILURE() << "cannot run " << command;
        return {};
    }
    std::string output;
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe.get()))
        output += buffer.data();
    const int status = pclose(pipe.release());
    EXPECT_EQ(status, 0) << command << " failed (poppler-utils must be installed):\n" << output;
    return output;
}

inline int PdfPages(const std::filesystem::path& pdf) {
    const std::string info = RunTool("pdfinfo '" + pdf.string() + "'");
    const auto at = info.find("Pages:");
    return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + 6);
}

// The text of one page (1-based), as poppler reads it back.
inline std::string PdfPageText(const std::filesystem::path& pdf, int page) {
    const std::string number = std::to_string(page);
    return RunTool("pdftotext -layout -f " + number + " -l " + number + " '" + pdf.string() + "' -");
}

} // namespace qx::test
