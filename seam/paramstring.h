// The saved parameter string of a panel: sections joined by "|", lists within a
// section joined by ";". Empty parts are kept, so a section's place never shifts.
#pragma once

#include <QString>
#include <QStringList>

namespace TC {

class CParamString {
public:
    static constexpr QChar kSectionSeparator = QLatin1Char('|');
    static constexpr QChar kListSeparator = QLatin1Char(';');

    // The sections of a saved string; an empty string has none, and the panel then changes nothing.
    static QStringList sections(const QString& param);
    static QString joinSections(const QStringList& sections);
    static QStringList list(const QString& section);
    static QString joinList(const QStringList& items);
    // The section at index, or an empty text when the string is shorter.
    static QString section(const QStringList& sections, int index);
};

}  // namespace TC
