#pragma once

#include <vector>

#include "inventory/application_item.h"

namespace tarnby {

class Platform;

// How the files of an application are known
//
// Every row of the table of locations is a place and some texts of the record, the keys. An entry belongs to the
// application when its name contains one of them, whatever the case and the accents:
//
//     bundle       com.example.editor    Preferences          com.example.Editor.plist      taken
//     label        Editor                Application Support  Editor/, Editor/Éditor.db     both taken
//     bundle_name  editor                Containers           com.example.editor.pro        another edition's, left
//
// A key of fewer than two letters matches nothing anywhere, neither as a name nor as an identifier: "." or "a" would
// otherwise make the whole disk the application's own.

/// Which of the files are wanted: all that are known to belong to the application, or those of them that are removed
/// with it, always a part.
enum class Purpose { show, remove };

/// Finds the files in groups: a relative text marks where a group begins, the files of the group follow. The bundle
/// itself comes first. An entry found at two places is listed twice. Rewrites the record as ApplicationItem tells.
/// Resolves the grants and begins to access them; what was not granted holds nothing.
std::vector<Url> related_files(Platform& platform, ApplicationItem& item, Purpose purpose);

}  // namespace tarnby
