#include "PrintDesigns.h"

#include "host/Text.h"

namespace qx::desk {

std::vector<DesignText> ReadPrintDesigns(CompanyDb& db) {
    std::vector<DesignText> designs;
    auto rows = db.OpenRecordset(
        "SELECT DESIGNNAME, SECTIONNAME, SECTIONTEXT FROM PRINTDESIGNS ORDER BY DESIGNNAME, SECTIONNAME");
    for (; !rows->EndOfRows(); rows->MoveNext())
        designs.push_back({rows->Field(0).AsText(), rows->Field(1).AsText(), rows->Field(2).AsText()});
    return designs;
}

void SavePrintDesign(CompanyDb& db, const DesignText& section) {
    const std::string design = Trim(section.design);
    const std::string name = Trim(section.section);
    if (design.empty() || name.empty())
        throw std::invalid_argument("A print design's section needs the design's name and its own.");
    Transaction unit(db);
    db.ExecuteSql("DELETE FROM PRINTDESIGNS WHERE DESIGNNAME=" + SqlQuote(design) +
                  " AND SECTIONNAME=" + SqlQuote(name));
    db.ExecuteSql("INSERT INTO PRINTDESIGNS (DESIGNNAME, SECTIONNAME, SECTIONTEXT) VALUES (" +
                  SqlQuote(design) + ", " + SqlQuote(name) + ", " + SqlQuote(section.text) + ")");
    unit.Commit();
}

void DeletePrintDesign(CompanyDb& db, const std::string& design, const std::string& section) {
    Transaction unit(db);
    db.ExecuteSql("DELETE FROM PRINTDESIGNS WHERE DESIGNNAME=" + SqlQuote(design) +
                  " AND SECTIONNAME=" + SqlQuote(section));
    unit.Commit();
}

void FillDesignSections(CompanyDb& db, PrintJob& job) {
    for (const auto* named : {&job.headSections, &job.footSections})
        for (const DesignSection& section : *named) {
            const Value text = db.LookupValue("PRINTDESIGNS", "SECTIONTEXT", "DESIGNNAME=? AND SECTIONNAME=?",
                                              {Value(section.design), Value(section.section)});
            if (!text.IsNull()) job.sections[section.section] = text.AsText();
        }
}

std::vector<std::string> SectionLines(const PrintJob& job, const std::vector<DesignSection>& named) {
    std::vector<std::string> lines;
    for (const DesignSection& section : named) {
        if (section.section == kBroughtForwardSection || section.section == kCarriedForwardSection) continue;
        const auto text = job.sections.find(section.section);
        if (text == job.sections.end()) continue;
        std::size_t start = 0;
        for (std::size_t end; (end = text->second.find('\n', start)) != std::string::npos; start = end + 1)
            lines.push_back(text->second.substr(start, end - start));
        lines.push_back(text->second.substr(start));
    }
    for (auto& line : lines)
        if (!line.empty() && line.back() == '\r') line.pop_back();
    return lines;
}

} // namespace qx::desk
