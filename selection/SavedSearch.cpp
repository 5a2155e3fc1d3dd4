#include "selection/SavedSearch.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int Version = 1;

ReadSearch failed(const QString& why)
{
    return {.search = {}, .error = why};
}

} // namespace

QString searchText(const SavedSearch& search)
{
    QJsonObject fields;
    for (auto field = search.fields.cbegin(); field != search.fields.cend(); ++field) {
        fields.insert(field.key(), field.value());
    }
    const QJsonObject all{{u"versione"_s, Version}, {u"nome"_s, search.name}, {u"criteri"_s, fields}};
    return QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact));
}

ReadSearch readSearch(const QString& text)
{
    const QJsonObject all = QJsonDocument::fromJson(text.toUtf8()).object();
    if (!all.value(u"nome"_s).isString() || !all.value(u"versione"_s).isDouble() ||
        !all.value(u"criteri"_s).isObject()) {
        return failed(u"La ricerca salvata non è leggibile."_s);
    }
    if (all.value(u"versione"_s).toInt() != Version) {
        return failed(u"La ricerca è stata salvata con un'altra versione del programma."_s);
    }
    SavedSearch search{.name = all.value(u"nome"_s).toString(), .fields = {}};
    const QJsonObject fields = all.value(u"criteri"_s).toObject();
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        if (!field.value().isString()) {
            return failed(u"La ricerca salvata non è leggibile."_s);
        }
        search.fields.insert(field.key(), field.value().toString());
    }
    return {.search = search, .error = {}};
}

QString misfits(const SavedSearch& search, const QMap<QString, QString>& offered)
{
    QStringList lines;
    for (auto field = search.fields.cbegin(); field != search.fields.cend(); ++field) {
        const auto known = offered.constFind(field.key());
        if (known == offered.cend()) {
            lines.append(u"il campo «%1» non esiste più"_s.arg(field.key()));
        } else if (!known->isEmpty()) {
            lines.append(u"il criterio «%1» qui non è disponibile"_s.arg(*known));
        }
    }
    if (lines.isEmpty()) {
        return {};
    }
    lines.removeDuplicates();
    return u"La ricerca «%1» non si può usare: %2."_s.arg(search.name, lines.join(u"; "_s));
}

} // namespace zul
