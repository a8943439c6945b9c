#pragma once

#include <QList>
#include <QStringList>

#include "model/project.h"

namespace tessaly {

/// What the multi-select list lstDefaultLangs shows.
struct DefaultLanguageList {
    QStringList items;
    QList<bool> selected;  ///< one an item

    bool operator==(const DefaultLanguageList&) const = default;
};

/// The list as the Setup page has to show it: every language of the project, those selected that
/// the table holds. To be called when the page comes to the front and after New and Open, before a
/// click can write back an older list. Keeps the table as it was in `DefaultLanguageCopy` and, if
/// any language is selected, takes those out of it that the project no longer has.
DefaultLanguageList showDefaultLanguages(Project& project);

/// A click in the list: rebuilds `DefaultLanguageTable` from what is selected now. Leaves
/// `unsavedChanges` as it is.
void setDefaultLanguages(Project& project, const DefaultLanguageList& list);

}  // namespace tessaly
