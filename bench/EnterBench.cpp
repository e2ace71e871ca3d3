// `qx enter` on a season's data: one J-Form of many lines, and a file of many one-line J-Forms,
// entered through the entry screen cell by cell as the command enters them. Time must grow
// with the lines, not their square, and memory must not grow with the documents.
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include "desk/cli/EnterDocuments.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <chrono>
#include <fstream>
#include <sstream>

namespace qx::bench {
namespace {

std::string Name(CompanyDb& db, int code) {
    return db.LookupValue("FAMASTER", "MHD", "MCD=" + std::to_string(code)).AsText();
}

// Writes a file of J-Forms on the season's last day at Khanna, in a book of their own, each of
// that many lines of paddy sold to the first buyer.
std::filesystem::path JFormsFile(CompanyDb& db, const std::filesystem::path& file, int forms,
                                 int lines) {
    const std::string day =
        db.LookupValue("DOCMAIN", "MAX(DOCDATE)", "DOCSERIES='JF'").AsDate().ToDisplay();
    const std::string line =
        R"({"PRODUCT_ID": "PADDY", "CUSTOMER_ID": ")" + Name(db, kFirstBuyerCode) +
        R"(", "QTY_PER_BOX": "37.50", "QUANTITY": "30.00", "REV_BAGS2": "80", "RATE": "2320"})";
    std::ofstream out(file);
    out << R"({"documents": [)";
    for (int form = 1; form <= forms; ++form) {
        out << (form > 1 ? ",\n" : "") << R"({"series": "JF", "date": ")" << day
            << R"(", "party": ")" << Name(db, kFirstFarmerCode)
            << R"(", "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "9002", "FORM_NO": ")" << form
            << R"("}, "lines": [)";
        for (int i = 0; i < lines; ++i)
            out << (i ? ", " : "") << line;
        out << "]}";
    }
    out << "]}";
    return file;
}

// Bytes the program holds on its heap.
double HeapInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

// Enters the file once; reports the time a line and a document, and how much more the desk
// holds on its heap afterwards than before (the company's page cache, the screen last closed).
void Enter(benchmark::State& state, int forms, int lines) {
    const auto company =
        SeasonCompanyCopy("enter-" + std::to_string(forms) + "x" + std::to_string(lines));
    MandiDesk desk(company);
    const auto file = JFormsFile(
        desk.Db(), company.parent_path() / (company.stem().string() + ".json"), forms, lines);
    desk.frontend.SetDefaultAnswer(kAnswerYes);
    const double heapBefore = HeapInUse();
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        std::ostringstream out, err;
        if (!cli::EnterDocuments(desk.app, desk.frontend, file, out, err)) {
            state.SkipWithError(("a J-Form was refused: " + err.str().substr(0, 300)).c_str());
            return;
        }
    }
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    state.counters["ms a line"] = took.count() / (forms * lines);
    state.counters["ms a document"] = took.count() / forms;
    state.counters["KB held after"] = (HeapInUse() - heapBefore) / 1024.0;
}

// One J-Form of n lines: the time a line must not grow with n.
void EnterLongJForm(benchmark::State& state) {
    Enter(state, 1, static_cast<int>(state.range(0)));
}
BENCHMARK(EnterLongJForm)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(5000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// A file of n one-line J-Forms: neither the time a document nor the memory held may grow with n.
void EnterLongFile(benchmark::State& state) {
    Enter(state, static_cast<int>(state.range(0)), 1);
}
BENCHMARK(EnterLongFile)->Arg(200)->Arg(1600)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
