#include "model/track_record.h"

#include <algorithm>

#include "model/text_codec.h"

namespace tessaly {

namespace {

std::optional<int> wholeNumber(const QString& text) {
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

}  // namespace

QString Variant::text() const {
    if (const auto* text = asText())
        return *text;
    if (const auto* integer = asInteger())
        return QString::number(*integer);
    if (const auto* boolean = asBoolean())
        return boolean->isTrue() ? QStringLiteral("True") : QStringLiteral("False");
    return {};
}

std::optional<int> Variant::number() const {
    if (const auto* text = asText())
        return wholeNumber(*text);
    if (const auto* integer = asInteger())
        return *integer;
    if (const auto* boolean = asBoolean())
        return boolean->isTrue() ? -1 : 0;
    return 0;
}

std::optional<bool> Variant::truth() const {
    if (const auto* text = asText()) {
        if (text->compare(u"True", Qt::CaseInsensitive) == 0)
            return true;
        if (text->compare(u"False", Qt::CaseInsensitive) == 0)
            return false;
    }
    const auto value = number();
    return value ? std::optional(*value != 0) : std::nullopt;
}

bool Variant::is(QStringView other) const {
    if (const auto* text = asText())
        return *text == other;
    return this->text() == other;
}

void setTypeTag(TrackRecord& record, QByteArrayView text) {
    record.typeTag.fill(' ');
    std::copy_n(text.begin(), std::min<qsizetype>(text.size(), 4), record.typeTag.begin());
}

QString typeTagText(const TrackRecord& record) {
    return fromCodePage({record.typeTag.data(), qsizetype(record.typeTag.size())});
}

std::optional<int> typeTagNumber(const TrackRecord& record) {
    return wholeNumber(typeTagText(record));
}

}  // namespace tessaly
