#include "setup/default_languages.h"

#include <QSet>

namespace tessaly {

DefaultLanguageList showDefaultLanguages(Project& project) {
    project.DefaultLanguageCopy = project.DefaultLanguageTable;
    QSet<QString> defaults;
    for (qsizetype i = 1; i < project.DefaultLanguageCopy.size(); ++i)
        defaults.insert(project.DefaultLanguageCopy[i].groupName.text());
    DefaultLanguageList list;
    list.items = project.lstLangs;
    for (const QString& language : list.items)
        list.selected.append(defaults.contains(language));
    // Selecting a line is a click in the list.
    if (list.selected.contains(true))
        setDefaultLanguages(project, list);
    return list;
}

void setDefaultLanguages(Project& project, const DefaultLanguageList& list) {
    project.DefaultLanguageTable = {TrackRecord{}};
    for (qsizetype i = 0; i < list.items.size(); ++i) {
        if (!list.selected.value(i))
            continue;
        TrackRecord record;
        record.kind = "lstDefaultLangs";
        record.groupName = list.items[i];
        project.DefaultLanguageTable.append(record);
    }
}

}  // namespace tessaly
