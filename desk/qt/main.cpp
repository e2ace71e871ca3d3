// qxdesk [COMPANY]: the desktop. Loads the modules, opens the company named on the command
// line, and shows the main window.

#include "QtFrontend.h"

#include "desk/core/DeskApp.h"
#include "desk/documents/HostDocuments.h"
#include "desk/ledgers/LedgerScreens.h"
#include "desk/masters/HostMasters.h"
#include "desk/vouchers/HostVouchers.h"

#include <QApplication>
#include <QSettings>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("QX"));
    QApplication::setApplicationName(QStringLiteral("QX Desk"));
    qx::desk::QtFrontend frontend;
    qx::desk::DeskApp app(frontend);
    qx::desk::RegisterHostMasters(app);
    qx::desk::RegisterHostDocuments(app);
    qx::desk::RegisterHostVouchers(app);
    qx::desk::RegisterHostLedgers(app);
    app.Guard([&] { app.LoadModules(qx::desk::DefaultModulesFolder()); });
    QSettings settings; // the user's own: the window's place and size
    frontend.Window().ShowAsLeft(settings);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() > 1) frontend.Window().OpenCompany(arguments.at(1));
    const int exitCode = QApplication::exec();
    // Windows closed on the way out are deleted now, while their modules are still loaded.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return exitCode;
}
