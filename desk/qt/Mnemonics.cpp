#include "Mnemonics.h"

#include <QAction>
#include <QSet>

namespace qx::desk {

namespace {

// The position of the marked character in a text that marks one, else -1.
qsizetype MarkedAt(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != u'&') continue;
        if (text[i + 1] == u'&') ++i; // "&&" is an ampersand
        else if (text[i + 1].isLetterOrNumber()) return i + 1;
    }
    return -1;
}

// A free character of the first word ("1&0. Local Mandi Master" beside "&1. J-Forms"), else
// the first free one at the start of a word, else the first free one anywhere.
qsizetype FreeAt(const QString& text, const QSet<QChar>& taken) {
    auto free = [&](qsizetype i) {
        return text[i].isLetterOrNumber() && text[i].unicode() < 128 && !taken.contains(text[i].toLower());
    };
    for (qsizetype i = 0; i < text.size() && text[i].isLetterOrNumber(); ++i)
        if (free(i)) return i;
    for (qsizetype i = 0; i < text.size(); ++i)
        if ((i == 0 || !text[i - 1].isLetterOrNumber()) && free(i)) return i;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (free(i)) return i;
    return -1;
}

} // namespace

void GiveMnemonics(const QList<QAction*>& actions) {
    QSet<QChar> taken;
    for (QAction* action : actions)
        if (const qsizetype at = MarkedAt(action->text()); at >= 0) taken.insert(action->text()[at].toLower());
    for (QAction* action : actions) {
        if (action->isSeparator() || MarkedAt(action->text()) >= 0) continue;
        QString text = action->text();
        text.replace(u'&', QStringLiteral("&&"));
        const qsizetype at = FreeAt(text, taken);
        if (at < 0) continue;
        taken.insert(text[at].toLower());
        text.insert(at, u'&');
        action->setText(text);
    }
}

} // namespace qx::desk
