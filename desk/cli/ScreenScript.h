#pragma once
// Drives the desk's screens from a script, as a user at the keyboard would: open a menu
// entry, type rows into a grid cell by cell, press keys, answer questions, close. Data that
// comes in this way (the demo company, say) takes the same path as a user's own entries.
//
// A script is a JSON array of steps, run in order on the screen opened last:
//   {"menu": "KEY"}                  click a main-menu or special-menu entry
//   {"grid": "NAME", "startColumn": C, "rows": [["cell", ...], ...]}
//                                    type each row into the grid's empty last row, from
//                                    column C, leaving each cell as Enter does
//   {"key": "F3"}                    press a key on the screen
//   {"answer": "yes"|"no"}           answer the next question
//   {"close": true}                  close the screen

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"

#include <nlohmann/json.hpp>

namespace qx::cli {

// Throws std::runtime_error naming the step that could not be carried out.
void RunScreenScript(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                     const nlohmann::json& steps);

} // namespace qx::cli
