#pragma once
// Series configuration from a file, as support staff set up a firm's series: one JSON
// document per series with its columns, boxes and charges (see the README). Importing a
// series of a code that exists replaces its configuration and keeps its numbering and id.

#include "host/CompanyDb.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace qx::desk {

// Writes every series of {"series": [...]} in one unit of work; throws std::runtime_error
// naming the series and what is wrong (an unknown head, a missing code). Returns the codes.
std::vector<std::string> ImportSeries(CompanyDb& db, const nlohmann::ordered_json& file);

} // namespace qx::desk
