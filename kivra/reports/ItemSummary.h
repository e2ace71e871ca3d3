#pragma once
// The item summary: how much of each item went through the forms of a period, in three
// sections (the firm's own purchases on J-Forms, the J-Forms of other buyers, the I-Forms),
// each item with its bags, quantity, amount and charges; and the listing of the forms behind
// one item of a section.

#include "ReportScope.h"

#include "host/PrintJob.h"

#include <cstdint>
#include <vector>

namespace kivra {

// The section ('A' self purchase, 'B' J-Forms, 'C' I-Forms) and item of a product line.
struct ItemLineKey {
    char section = 0; // 0: not a product line
    std::int32_t productId = 0;
};

struct ItemSummary {
    qx::PrintJob job;
    std::vector<ItemLineKey> keys; // one for each row of the job
};

ItemSummary ItemSummaryJob(ModuleContext& context, const ReportScope& scope);
qx::PrintJob ItemDetailJob(ModuleContext& context, const ReportScope& scope, ItemLineKey line);

} // namespace kivra
