#pragma once
// The widgets application of the desktop's tests (offscreen), and answers to the message
// boxes and dialogs that the code under test opens and waits on.

#include "QtTestSupport.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

namespace qx::test {

// One widgets application for the whole test program; it is never torn down, since Qt
// must not be destroyed while static objects are.
inline void EnsureWidgetsApplication() {
    if (QCoreApplication::instance()) return;
    static int argc = 1;
    static char name[] = "qt_desk_test";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

// Acts on the next modal window of that kind (a message box, a file dialog, a modal screen)
// once it is open; the test then calls what opens it, and the action must close the window.
// Gives up after thirty seconds (a loaded machine may take seconds to open a dialog), so that
// a window that never opens cannot be acted on by a later test.
template <class Kind> void WhenOpens(std::function<void(Kind&)> action) {
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action = std::move(action), ticks = 0]() mutable {
        auto* modal = qobject_cast<Kind*>(QApplication::activeModalWidget());
        if ((!modal || !modal->isVisible()) && ++ticks < 3000) return;
        timer->stop();
        timer->deleteLater();
        if (modal) action(*modal);
    });
    timer->start();
}

inline void WhenModalOpens(std::function<void(QWidget& modal)> action) {
    WhenOpens<QWidget>(std::move(action));
}

// Acts on each of the next count modal windows in turn, as they open one after the other.
inline void WhenModalsOpen(int count, std::function<void(QWidget& modal)> action) {
    WhenModalOpens([count, action](QWidget& modal) {
        if (count > 1) WhenModalsOpen(count - 1, action);
        action(modal);
    });
}

} // namespace qx::test
