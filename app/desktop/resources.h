#pragma once

#include <QIcon>
#include <QString>
#include <string>

namespace tarnby {

/// Where a file or folder of the program's resources is, as an absolute path, found from where the program itself is:
/// no path of the machine that built it is in it. Where it would be when there is none.
QString resource_path(const QString& name);

/// The same for a program that this one starts for its own work.
QString program_path(const QString& name);

/// A resource that may be there in a language: "help/page.de.html" beside "help/page.html", which serves all
/// others.
QString page_path(const QString& name, const std::string& language);

/// The program's icon in several sizes, for desktops that do not know it by the program's name.
QIcon program_icon();

}  // namespace tarnby
