#include "FtpListingParser.h"

#include <QTimeZone>
#include <array>

namespace {
struct Token
{
    qsizetype begin = 0;
    qsizetype end = 0;
};

bool IsBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

// Splits off up to N leading tokens; returns how many were found.
template <size_t N> size_t Tokenize(QStringView line, std::array<Token, N>& tokens)
{
    size_t count = 0;
    qsizetype pos = 0;
    const qsizetype length = line.size();
    while (count < N) {
        while (pos < length && IsBlank(line[pos]))
            ++pos;
        if (pos >= length)
            break;
        tokens[count].begin = pos;
        while (pos < length && !IsBlank(line[pos]))
            ++pos;
        tokens[count].end = pos;
        ++count;
    }
    return count;
}

QStringView Text(QStringView line, const Token& token)
{
    return line.mid(token.begin, token.end - token.begin);
}

// The name starts after the separator that follows the token; a name may itself begin with blanks,
// so at most maxBlanks are skipped (more than one only where a column is padded).
QStringView Rest(QStringView line, const Token& token, qsizetype maxBlanks = 1)
{
    qsizetype pos = token.end;
    const qsizetype limit = qMin(line.size(), token.end + maxBlanks);
    while (pos < limit && IsBlank(line[pos]))
        ++pos;
    return line.mid(pos);
}

bool AllDigits(QStringView text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text) {
        if (!c.isDigit())
            return false;
    }
    return true;
}

int MonthNumber(QStringView text)
{
    static const char* const names[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                        "jul", "aug", "sep", "oct", "nov", "dec"};
    if (text.size() < 3)
        return 0;
    for (int i = 0; i < 12; ++i) {
        if (text.left(3).compare(QLatin1String(names[i]), Qt::CaseInsensitive) == 0)
            return i + 1;
    }
    return 0;
}

bool IsUnixPermissions(QStringView text)
{
    if (text.size() < 10 || !QStringView(u"-dlbcpsD").contains(text[0]))
        return false;
    for (qsizetype i = 1; i < 10; ++i) {
        if (!QStringView(u"rwxsStTlL-").contains(text[i]))
            return false;
    }
    return true;
}

bool ParseClock(QStringView text, QTime* time)
{
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    if (colon <= 0 || !AllDigits(text.left(colon)) || !AllDigits(text.mid(colon + 1)))
        return false;
    *time = QTime(text.left(colon).toInt(), text.mid(colon + 1).toInt());
    return time->isValid();
}

bool AcceptName(QStringView name, FtpFileInfo* info)
{
    if (name.trimmed().isEmpty() || name == u"." || name == u".." || name.contains(QLatin1Char('/')))
        return false;
    info->name = name.toString();
    return true;
}

QDateTime ParseMlsdTime(QStringView value)
{
    if (value.size() < 14 || !AllDigits(value.left(14)))
        return {};
    const QDate date(value.mid(0, 4).toInt(), value.mid(4, 2).toInt(), value.mid(6, 2).toInt());
    const QTime time(value.mid(8, 2).toInt(), value.mid(10, 2).toInt(), value.mid(12, 2).toInt());
    return QDateTime(date, time, QTimeZone::utc());
}
} // namespace

FtpListingParser::FtpListingParser(const QDateTime& nowUtc) : m_dtNow(nowUtc.toUTC()) {}

QList<FtpFileInfo> FtpListingParser::Parse(const QByteArray& listing) const
{
    return Parse(QString::fromUtf8(listing));
}

QList<FtpFileInfo> FtpListingParser::Parse(const QString& text) const
{
    QList<FtpFileInfo> entries;
    entries.reserve(text.count(QLatin1Char('\n')) + 1);
    FtpFileInfo info;
    for (QStringView line : QStringView(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (ParseLine(line, &info))
            entries.append(info);
    }
    return entries;
}

bool FtpListingParser::ParseLine(QStringView line, FtpFileInfo* info) const
{
    while (!line.isEmpty() && (line.back() == QLatin1Char('\r') || line.back() == QLatin1Char('\n')))
        line.chop(1);
    *info = FtpFileInfo();
    return ParseMlsd(line, info) || ParseUnix(line, info) || ParseDos(line, info);
}

bool FtpListingParser::ParseMlsd(QStringView line, FtpFileInfo* info) const
{
    const qsizetype space = line.indexOf(QLatin1Char(' '));
    if (space <= 0)
        return false;
    const QStringView facts = line.left(space);
    if (!facts.contains(QLatin1Char('=')) || !facts.contains(QLatin1Char(';')))
        return false;
    QString type = QStringLiteral("file");
    QDateTime created;
    for (QStringView fact : facts.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qsizetype equals = fact.indexOf(QLatin1Char('='));
        if (equals <= 0)
            return false;
        const QStringView key = fact.left(equals);
        const QStringView value = fact.mid(equals + 1);
        if (key.compare(u"type", Qt::CaseInsensitive) == 0) {
            if (value.compare(u"cdir", Qt::CaseInsensitive) == 0 || value.compare(u"pdir", Qt::CaseInsensitive) == 0)
                return false;
            if (value.compare(u"dir", Qt::CaseInsensitive) == 0)
                type = QStringLiteral("dir");
        } else if (key.compare(u"size", Qt::CaseInsensitive) == 0 || key.compare(u"sizd", Qt::CaseInsensitive) == 0) {
            // A size that is not plain digits (a sign, garbage) counts as unknown.
            if (AllDigits(value))
                info->size = value.toLongLong();
        } else if (key.compare(u"modify", Qt::CaseInsensitive) == 0) {
            info->time = ParseMlsdTime(value);
        } else if (key.compare(u"create", Qt::CaseInsensitive) == 0) {
            created = ParseMlsdTime(value);
        }
    }
    if (!info->time.isValid())
        info->time = created;
    info->type = type;
    return AcceptName(line.mid(space + 1), info);
}

bool FtpListingParser::ParseUnix(QStringView line, FtpFileInfo* info) const
{
    std::array<Token, 9> tokens;
    const size_t count = Tokenize(line, tokens);
    if (count < 6 || !IsUnixPermissions(Text(line, tokens[0])))
        return false;
    // The owner and group columns vary (one may be missing), so find the date by its month name.
    for (size_t month = 3; month + 2 < count && month <= 6; ++month) {
        const int monthNumber = MonthNumber(Text(line, tokens[month]));
        const QStringView day = Text(line, tokens[month + 1]);
        const QStringView yearOrTime = Text(line, tokens[month + 2]);
        const QStringView size = Text(line, tokens[month - 1]);
        if (monthNumber == 0 || !AllDigits(day) || day.toInt() < 1 || day.toInt() > 31)
            continue;
        const bool bDevice = Text(line, tokens[month - 2]).endsWith(QLatin1Char(','));
        if (!AllDigits(size))
            continue;
        QDate date;
        QTime time(0, 0);
        if (AllDigits(yearOrTime) && yearOrTime.size() == 4)
            date = QDate(yearOrTime.toInt(), monthNumber, day.toInt());
        else if (ParseClock(yearOrTime, &time))
            date = YearlessDate(monthNumber, day.toInt());
        else
            continue;
        QStringView name = Rest(line, tokens[month + 2]);
        const QChar kind = line[tokens[0].begin];
        if (kind == QLatin1Char('l')) {
            const qsizetype arrow = name.indexOf(u" -> ");
            if (arrow > 0)
                name = name.left(arrow);
        }
        info->type = kind == QLatin1Char('d') ? QStringLiteral("dir") : QStringLiteral("file");
        info->size = bDevice ? 0 : size.toLongLong();
        info->time = QDateTime(date, time, QTimeZone::utc());
        return AcceptName(name, info);
    }
    return false;
}

bool FtpListingParser::ParseDos(QStringView line, FtpFileInfo* info) const
{
    std::array<Token, 4> tokens;
    const size_t count = Tokenize(line, tokens);
    if (count < 4)
        return false;
    const QStringView dateText = Text(line, tokens[0]);
    if (dateText.size() < 8)
        return false;
    const QChar separator =
        dateText[2] == QLatin1Char('-') || dateText[2] == QLatin1Char('/') ? dateText[2] : dateText[4];
    const QList<QStringView> parts = dateText.split(separator);
    if (parts.size() != 3 || !AllDigits(parts[0]) || !AllDigits(parts[1]) || !AllDigits(parts[2]))
        return false;
    QDate date;
    if (parts[0].size() == 4) {
        date = QDate(parts[0].toInt(), parts[1].toInt(), parts[2].toInt());
    } else {
        int year = parts[2].toInt();
        if (parts[2].size() == 2)
            year += year < 70 ? 2000 : 1900;
        date = QDate(year, parts[0].toInt(), parts[1].toInt());
    }
    if (!date.isValid())
        return false;

    QStringView clock = Text(line, tokens[1]);
    size_t next = 2;
    int pmShift = -1; // -1: 24-hour clock
    auto takeMeridiem = [&pmShift](QStringView text) {
        if (text.compare(u"AM", Qt::CaseInsensitive) == 0)
            pmShift = 0;
        else if (text.compare(u"PM", Qt::CaseInsensitive) == 0)
            pmShift = 12;
        return pmShift >= 0;
    };
    if (clock.size() > 2 && takeMeridiem(clock.right(2)))
        clock.chop(2);
    else if (takeMeridiem(Text(line, tokens[2])))
        next = 3;
    QTime time;
    if (!ParseClock(clock, &time))
        return false;
    if (pmShift >= 0)
        time = QTime(time.hour() % 12 + pmShift, time.minute());
    if (next >= count)
        return false;

    const QStringView sizeOrDir = Text(line, tokens[next]);
    // "<DIR>" is left-aligned in the size column, padded to 14 characters, then one separator.
    qsizetype nameGap = 1;
    if (sizeOrDir.compare(u"<DIR>", Qt::CaseInsensitive) == 0) {
        nameGap = 10;
        info->type = QStringLiteral("dir");
    } else {
        QString digits = sizeOrDir.toString();
        digits.remove(QLatin1Char(','));
        if (!AllDigits(digits))
            return false;
        info->type = QStringLiteral("file");
        info->size = digits.toLongLong();
    }
    info->time = QDateTime(date, time, QTimeZone::utc());
    return AcceptName(Rest(line, tokens[next], nameGap), info);
}

QDate FtpListingParser::YearlessDate(int month, int day) const
{
    const QDate today = m_dtNow.date();
    QDate date(today.year(), month, day);
    if (!date.isValid() || date > today.addDays(1))
        date = QDate(today.year() - 1, month, day);
    return date;
}
