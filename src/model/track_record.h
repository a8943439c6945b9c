#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <array>
#include <optional>
#include <utility>
#include <variant>

namespace tessaly {

/// The words in a record's `kind`, and in what a trigger plays.
namespace kind {
inline constexpr QStringView Music = u"music";
inline constexpr QStringView Speech = u"speech";
inline constexpr QStringView Empty = u"empty";  ///< deleted, or a trigger that is free
inline constexpr QStringView Trigger = u"dtrig";
inline constexpr QStringView PowerUp = u"powerup";
inline constexpr QStringView SystemText = u"stext";
inline constexpr QStringView Setting = u"setup";
inline constexpr QStringView Title = u"lstSpTitles";
inline constexpr QStringView Language = u"lstLangs";
inline constexpr QStringView DefaultLanguage = u"lstDefaultLangs";
}  // namespace kind

/// A 16-bit Boolean as the project file holds it: 0 is False, anything else True. The program
/// writes True as -1; another number that a file brings is kept.
struct Boolean16 {
    qint16 raw = 0;

    static constexpr Boolean16 of(bool value) { return {qint16(value ? -1 : 0)}; }
    constexpr bool isTrue() const { return raw != 0; }
    bool operator==(const Boolean16&) const = default;
};

/// A field of a record that holds nothing, a text, a 16-bit integer or a Boolean.
class Variant {
 public:
    Variant() = default;
    Variant(QString text) : value_(std::move(text)) {}
    Variant(QStringView text) : value_(text.toString()) {}
    Variant(const char* text) : value_(QString::fromUtf8(text)) {}
    Variant(qint16 integer) : value_(integer) {}
    Variant(Boolean16 boolean) : value_(boolean) {}

    bool isEmpty() const { return std::holds_alternative<std::monostate>(value_); }
    const QString* asText() const { return std::get_if<QString>(&value_); }
    const qint16* asInteger() const { return std::get_if<qint16>(&value_); }
    const Boolean16* asBoolean() const { return std::get_if<Boolean16>(&value_); }

    /// The value as text: empty for nothing, a decimal number for an integer, "True" or "False".
    QString text() const;

    /// The value as a whole number; nothing where a text is none. Empty is 0, True -1.
    std::optional<int> number() const;

    /// The value as a Boolean; nothing where a text is neither "True", "False" nor a number.
    std::optional<bool> truth() const;

    /// Exact comparison as texts: an empty value equals the empty text.
    bool is(QStringView other) const;

    /// Same type and same value.
    bool operator==(const Variant&) const = default;

 private:
    std::variant<std::monostate, qint16, Boolean16, QString> value_;
};

/// The one record of the project and of its file.
struct TrackRecord {
    Variant kind;        ///< what it is: one of the words above
    Variant itemName;    ///< track name or speech title; slot number of a system text
    Variant groupName;   ///< music list or language; key of a setting; a system text itself
    Variant sourcePath;  ///< the MP3 file on the PC; a setting's value; what a trigger plays
    Boolean16 endlessLoop;
    Boolean16 cancelOnInterrupt;
    Boolean16 loudVolume;
    std::array<char, 4> typeTag{};  ///< four NULs until set; then text padded with blanks

    bool operator==(const TrackRecord&) const = default;
};

inline bool isMusic(const TrackRecord& record) {
    return record.kind.is(kind::Music);
}
inline bool isSpeech(const TrackRecord& record) {
    return record.kind.is(kind::Speech);
}
/// Music or speech: a record that stands for one MP3 file on the card.
inline bool isTrackFile(const TrackRecord& record) {
    return isMusic(record) || isSpeech(record);
}

/// Puts `text` into the tag, cut or padded with blanks to four characters.
void setTypeTag(TrackRecord& record, QByteArrayView text);

/// The tag as text, blanks and NULs included.
QString typeTagText(const TrackRecord& record);

/// The tag as a number, blanks around it ignored; nothing where it is none.
std::optional<int> typeTagNumber(const TrackRecord& record);

}  // namespace tessaly
