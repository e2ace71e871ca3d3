#pragma once
// The desk's file dialogs, and the one rule they keep: files are listed by name, never opened.
//
// SQLite's locks on the company are POSIX advisory locks, which a process loses when it closes
// any descriptor of the file. Qt's own file listings (a file dialog, a completer on a file
// system model) ask each file's type and icon of the MIME database, which opens a file whose
// name does not settle its type (the company file and its -wal and -shm files) and closes it
// again: the desk would be left without its locks, and the next program to open the company
// would take the write-ahead log from under it. Every listing of the desk goes through here.

#include <QString>

class QWidget;

namespace qx::desk {

struct FileQuestion {
    enum class Kind { Open, Save } kind = Kind::Open;
    QString caption;
    QString suggested; // a file name or path to start from
    QString filter;    // "PDF files (*.pdf)"
};

// Asks for a file with the desk's own dialog; empty when the user cancels.
QString AskFileName(QWidget* parent, const FileQuestion& question);

// Makes every file listing a dialog holds (a completer's file system model, say) list by name
// only. Call it as soon as the dialog is made, before the event loop runs: the listing's
// first results are taken in then.
void ListFilesByName(QWidget& dialog);

} // namespace qx::desk
