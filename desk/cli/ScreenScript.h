#pragma once
// Drives the desk's screens from a script, as a user at the keyboard would: open a menu
// entry, type rows into a grid cell by cell, fill input boxes, click buttons, answer
// questions, close. Data that comes in this way (the demo company, say) takes the same path
// as a user's own entries.
//
// A script is a JSON array of steps, run in order on the screen opened last:
//   {"menu": "KEY"}                        click a main-menu or special-menu entry
//   {"grid": "NAME", "columns": ["Caption", ...], "rows": [["cell", ...], ...]}
//                                          type each row into the grid's empty last row, into
//                                          the columns of those captions, leaving each cell as
//                                          Enter does, then the row
//   {"select": "GRID", "column": "Caption", "text": "..."}
//                                          move to the row whose cell in that column reads so
//   {"type": "BOX", "text": "..."}         type into an input box and leave it
//   {"choose": "LIST", "text": "..."}      choose an entry of a list box
//   {"check": "BOX", "value": true}        tick or clear a check box
//   {"click": "BUTTON"}                    click a button ({"index": i} for OK/Cancel pairs)
//   {"modal": [steps]}                     the steps to take on the next dialog, which opens
//                                          during the step after
//   {"key": "F3"}                          press a key on the screen
//   {"answer": "yes"|"no"}                 answer the next question
//   {"close": true}                        close the screen

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"

#include <nlohmann/json.hpp>

namespace qx::cli {

// What a user does to one control, as the steps "type", "choose" and "check" do; each throws
// std::runtime_error saying why it could not be done (a box's refusal is the message it showed).
void TypeAndLeave(ui::Screen& screen, ui::TextBox& box, const std::string& text, desk::ScriptedFrontend& frontend);
void ChooseEntry(ui::ComboBox& list, const std::string& text);
void SetCheck(ui::CheckBox& box, bool value);

// Throws std::runtime_error naming the step that could not be carried out.
void RunScreenScript(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                     const nlohmann::json& steps);
// The steps to take on the next dialog that opens, whatever opens it.
void QueueDialogSteps(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                      const nlohmann::json& steps);

} // namespace qx::cli
