#pragma once
// Entering documents from a file through the document engine, as a user at the keyboard
// would: header boxes typed and left, each line's cells entered and left in order, the
// charges' rates, then save. Every event of the engine fires as it does at the keyboard.
//
// The file (JSON; keys are taken in the order written; every value is text):
//   {"documents": [
//     {"series": "JF",                       the series' code
//      "date": "05/11/2024",                 dd/MM/yyyy
//      "party": "GURMEET SINGH",             the account, by name
//      "boxes": {"FORM_NO": "345", ...},     the series' own boxes, by name; a box with a
//                                            look-up is chosen from its list by the text
//      "pick": [{"Party": "PUNGRAIN", ...}], rows to take from the list a new document opens
//                                            with, each by the texts under the list's captions
//      "lines": [{"PRODUCT_ID": "WHEAT", "QUANTITY": "10.40", ...}, ...],
//                                            each line's cells by column key, in order
//      "charges": {"LABOUR": "3.50"},        rates of the charges, by charge key
//      "dialogs": [[steps], ...]}            what to do on each dialog the typing opens, in
//                                            order, as steps of a screen script
//   ]}
// A saved document is opened first when the document has "open": {"number": "5"} or
// "open": {"boxes": {"FORM_BOOK_NO": "12", ...}}; its date and party may then be left out, as
// they may when a row picked gives them. A series' required look-up boxes that a new document
// asks for first are answered from "boxes"; a list it opens that "pick" does not answer is
// closed, and the lines a module fills in then are changed by naming their line numbers.
// "action" is "save" (the default), "cancel" or "delete". A line may name its line,
// {"line": "2", ...}, and {"line": "2", "remove": "yes"} removes one.

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"

#include <filesystem>
#include <iosfwd>

namespace qx::cli {

// Enters the documents one by one as the file is read; each is saved or refused on its own.
// Every message is written to out as it is shown, naming the document and the field being
// typed ("document 2 (JF of 05/11/2024), line 1 QUANTITY: [W] ..."); so is each saved document
// as soon as it is saved, flushed, so that a run cut short leaves a true log. A refused
// document is reported on err with why. False when any was refused.
bool EnterDocuments(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                    const std::filesystem::path& file, std::ostream& out, std::ostream& err);

} // namespace qx::cli
