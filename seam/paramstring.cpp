#include "seam/paramstring.h"

namespace TC {

QStringList CParamString::sections(const QString& param)
{
    if (param.isEmpty()) {
        return {};
    }
    return param.split(kSectionSeparator, Qt::KeepEmptyParts);
}

QString CParamString::joinSections(const QStringList& sections) { return sections.join(kSectionSeparator); }

QStringList CParamString::list(const QString& section)
{
    if (section.isEmpty()) {
        return {};
    }
    return section.split(kListSeparator, Qt::KeepEmptyParts);
}

QString CParamString::joinList(const QStringList& items) { return items.join(kListSeparator); }

QString CParamString::section(const QStringList& sections, int index)
{
    return index >= 0 && index < sections.size() ? sections.at(index) : QString();
}

}  // namespace TC
