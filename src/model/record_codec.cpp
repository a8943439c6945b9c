// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/record_codec.h"

#include <QtEndian>

#include "model/format_limits.h"
#include "model/text_codec.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

enum TypeCode : quint16 { TypeEmpty = 0, TypeInteger = 2, TypeText = 8, TypeBoolean = 11 };

void put16(QByteArray& bytes, quint16 value) {
    bytes.append(char(value & 0xFF));
    bytes.append(char(value >> 8));
}

void putVariant(QByteArray& bytes, const Variant& value) {
    if (const auto* text = value.asText()) {
        const QByteArray encoded = toCodePage(*text);
        if (encoded.size() > limits::TextBytes)
            throw TessalyError(
                error_number::TextTooLong,
                u"The text \"%1...\" has %2 characters, a project file holds at most %3."_s
                    .arg(text->left(30))
                    .arg(encoded.size())
                    .arg(limits::TextBytes));
        put16(bytes, TypeText);
        put16(bytes, quint16(encoded.size()));
        bytes.append(encoded);
    } else if (const auto* integer = value.asInteger()) {
        put16(bytes, TypeInteger);
        put16(bytes, quint16(*integer));
    } else if (const auto* boolean = value.asBoolean()) {
        put16(bytes, TypeBoolean);
        put16(bytes, quint16(boolean->raw));
    } else {
        put16(bytes, TypeEmpty);
    }
}

// Walks through bytes; once a read fails, all later ones do.
class Reader {
 public:
    explicit Reader(QByteArrayView bytes) : bytes_(bytes) {}

    qint64 position() const { return position_; }
    bool atEnd() const { return position_ == bytes_.size(); }
    bool failed() const { return failed_; }
    bool knowsType() const { return badType_ < 0; }
    int badType() const { return badType_; }

    QByteArrayView take(qsizetype count) {
        if (failed_ || bytes_.size() - position_ < count) {
            failed_ = true;
            return {};
        }
        const QByteArrayView taken = bytes_.sliced(position_, count);
        position_ += count;
        return taken;
    }

    qint16 takeInteger() {
        const QByteArrayView two = take(2);
        return failed_ ? qint16(0) : qFromLittleEndian<qint16>(two.data());
    }

    Variant takeVariant() {
        const auto type = quint16(takeInteger());
        if (failed_)
            return {};
        switch (type) {
            case TypeEmpty:
                return {};
            case TypeInteger:
                return takeInteger();
            case TypeBoolean:
                return Boolean16{takeInteger()};
            case TypeText: {
                const auto length = quint16(takeInteger());
                return fromCodePage(take(length));
            }
            default:
                failed_ = true;
                badType_ = type;
                return {};
        }
    }

    TrackRecord takeRecord() {
        TrackRecord record;
        record.kind = takeVariant();
        record.itemName = takeVariant();
        record.groupName = takeVariant();
        record.sourcePath = takeVariant();
        record.endlessLoop.raw = takeInteger();
        record.cancelOnInterrupt.raw = takeInteger();
        record.loudVolume.raw = takeInteger();
        const QByteArrayView tag = take(4);
        std::copy(tag.begin(), tag.end(), record.typeTag.begin());
        return record;
    }

 private:
    QByteArrayView bytes_;
    qsizetype position_ = 0;
    bool failed_ = false;
    int badType_ = -1;
};

}  // namespace

void encodeRecord(QByteArray& bytes, const TrackRecord& record) {
    for (const Variant* field :
         {&record.kind, &record.itemName, &record.groupName, &record.sourcePath})
        putVariant(bytes, *field);
    for (const Boolean16 flag : {record.endlessLoop, record.cancelOnInterrupt, record.loudVolume})
        put16(bytes, quint16(flag.raw));
    bytes.append(record.typeTag.data(), qsizetype(record.typeTag.size()));
}

ParsedRecords parseRecords(QByteArrayView bytes) {
    ParsedRecords parsed;
    Reader reader(bytes);
    while (!reader.atEnd()) {
        if (parsed.records.size() == limits::ProjectRecords) {
            parsed.isComplete = false;
            parsed.stopReason = u"the file has more than %1 records"_s.arg(limits::ProjectRecords);
            return parsed;
        }
        TrackRecord record = reader.takeRecord();
        if (reader.failed()) {
            parsed.isComplete = false;
            const qsizetype number = parsed.records.size() + 1;
            parsed.stopReason =
                reader.knowsType()
                    ? u"the file ends in the middle of record %1"_s.arg(number)
                    : u"record %1 holds a value of the unknown type %2"_s.arg(number).arg(
                          reader.badType());
            return parsed;
        }
        parsed.records.append(std::move(record));
        parsed.stoppedAt = reader.position();
    }
    return parsed;
}

}  // namespace tessaly
