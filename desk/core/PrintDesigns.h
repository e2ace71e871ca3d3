#pragma once
// The firm's print designs: named sections of text (its heading, address and licence lines)
// kept in the company (PRINTDESIGNS), which reports print above and below their pages.

#include "host/CompanyDb.h"
#include "host/PrintJob.h"

#include <string>
#include <vector>

namespace qx::desk {

struct DesignText {
    std::string design;
    std::string section;
    std::string text;
};

// Every section of the company's designs, by design and section.
std::vector<DesignText> ReadPrintDesigns(CompanyDb& db);
// Writes a section, new or changed, in one unit of work.
void SavePrintDesign(CompanyDb& db, const DesignText& section);
void DeletePrintDesign(CompanyDb& db, const std::string& design, const std::string& section);
// Fills the job's section texts from the company, for the sections it names.
void FillDesignSections(CompanyDb& db, PrintJob& job);
// The texts of the named sections the job holds, line by line. The sections that caption the
// page totals are no text of their own.
std::vector<std::string> SectionLines(const PrintJob& job, const std::vector<DesignSection>& named);

} // namespace qx::desk
