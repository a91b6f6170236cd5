#include "ui/ItalianQt.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace kelm::ui {

bool installQtItalian(QCoreApplication& app)
{
    auto* translator = new QTranslator(&app);
    for (const QString& folder : {QCoreApplication::applicationDirPath() + QStringLiteral("/translations"),
                                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)})
        if (translator->load(QStringLiteral("qt_it"), folder))
            return QCoreApplication::installTranslator(translator);
    delete translator;
    return false;
}

} // namespace kelm::ui
