#include "MachineModelReader.h"

#include "ShapeMesh.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <cmath>

namespace {
class Parser
{
public:
    std::optional<MachineModel> Run(const QString& text, QString* error);

private:
    bool Fail(const QString& message);
    bool ParseLine(const QString& line);
    bool StartSection(const QString& name);
    bool SetMachineKey(const QString& key, const QString& value);
    bool SetStockKey(const QString& key, const QString& value);
    bool SetPartKey(const QString& key, const QString& value);
    bool FinishPart();
    bool Numbers(const QString& value, int count, QVector<float>* numbers, QString* rest = nullptr);
    bool Vector(const QString& value, QVector3D* vector);
    bool Colour(const QString& text, QColor* color);

    enum class Section
    {
        None,
        Machine,
        Stock,
        Part,
    };

    MachineModel m_model;
    Section m_eSection = Section::None;
    bool m_bHasMachine = false;
    int m_iLine = 0;
    QString m_strError;
    std::optional<MachinePart> m_part;
    QColor m_partColour;
    struct PendingShape
    {
        QString strKind;
        QVector<float> listNumbers;
        int iAxis = 2;
        QColor color;
    };
    QList<PendingShape> m_listShapes;
    QString m_strStockParent;
    int m_iStockLine = 0;
    QVector3D m_stockOrigin;
};

bool Parser::Fail(const QString& message)
{
    m_strError = m_iLine > 0 ? QStringLiteral("line %1: %2").arg(m_iLine).arg(message) : message;
    return false;
}

std::optional<MachineModel> Parser::Run(const QString& text, QString* error)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    bool bOk = true;
    for (int i = 0; bOk && i < lines.size(); ++i) {
        m_iLine = i + 1;
        bOk = ParseLine(lines.at(i).trimmed());
    }
    if (bOk)
        bOk = FinishPart();
    m_iLine = 0;
    if (bOk && !m_bHasMachine)
        bOk = Fail(QStringLiteral("no [Machine] section"));
    if (bOk && m_model.Parts().isEmpty())
        bOk = Fail(QStringLiteral("the model has no parts"));
    if (bOk && !m_strStockParent.isEmpty()) {
        const int index = m_model.PartIndex(m_strStockParent);
        m_iLine = m_iStockLine;
        if (index < 0)
            bOk = Fail(QStringLiteral("unknown stock parent '%1'").arg(m_strStockParent));
        else
            m_model.SetStockFrame(index, m_stockOrigin);
    }
    if (!bOk) {
        if (error)
            *error = m_strError;
        return std::nullopt;
    }
    return m_model;
}

bool Parser::ParseLine(const QString& line)
{
    if (line.isEmpty() || line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')))
        return true;
    if (line.startsWith(QLatin1Char('['))) {
        if (!line.endsWith(QLatin1Char(']')))
            return Fail(QStringLiteral("unclosed section header"));
        return FinishPart() && StartSection(line.mid(1, line.size() - 2).trimmed());
    }
    const int equals = line.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return Fail(QStringLiteral("expected key=value"));
    const QString key = line.left(equals).trimmed();
    const QString value = line.mid(equals + 1).trimmed();
    switch (m_eSection) {
    case Section::Machine:
        return SetMachineKey(key, value);
    case Section::Stock:
        return SetStockKey(key, value);
    case Section::Part:
        return SetPartKey(key, value);
    case Section::None:
        break;
    }
    return Fail(QStringLiteral("key outside a section"));
}

bool Parser::StartSection(const QString& name)
{
    if (name == QLatin1String("Machine")) {
        m_eSection = Section::Machine;
        m_bHasMachine = true;
        return true;
    }
    if (name == QLatin1String("Stock")) {
        m_eSection = Section::Stock;
        m_iStockLine = m_iLine;
        return true;
    }
    if (name.startsWith(QLatin1String("Part."))) {
        const QString partName = name.mid(5).trimmed();
        if (partName.isEmpty())
            return Fail(QStringLiteral("part without a name"));
        if (m_model.PartIndex(partName) >= 0)
            return Fail(QStringLiteral("part '%1' defined twice").arg(partName));
        m_eSection = Section::Part;
        m_part = MachinePart();
        m_part->strName = partName;
        m_partColour = QColor(0x9a, 0xa3, 0xad);
        m_listShapes.clear();
        return true;
    }
    return Fail(QStringLiteral("unknown section [%1]").arg(name));
}

bool Parser::SetMachineKey(const QString& key, const QString& value)
{
    if (key != QLatin1String("Name"))
        return Fail(QStringLiteral("unknown key '%1' in [Machine]").arg(key));
    m_model.SetName(value);
    return true;
}

bool Parser::SetStockKey(const QString& key, const QString& value)
{
    if (key == QLatin1String("Parent")) {
        m_strStockParent = value;
        return true;
    }
    if (key == QLatin1String("Origin"))
        return Vector(value, &m_stockOrigin);
    return Fail(QStringLiteral("unknown key '%1' in [Stock]").arg(key));
}

bool Parser::SetPartKey(const QString& key, const QString& value)
{
    MachinePart& part = *m_part;
    if (key == QLatin1String("Parent")) {
        if (value.isEmpty()) {
            part.iParent = -1;
            return true;
        }
        part.iParent = m_model.PartIndex(value);
        return part.iParent >= 0 || Fail(QStringLiteral("unknown parent '%1' (define parents first)").arg(value));
    }
    if (key == QLatin1String("Axis")) {
        static const QHash<QString, MachineAxis> axes{
            {QStringLiteral("None"), MachineAxis::None}, {QStringLiteral("X"), MachineAxis::X},
            {QStringLiteral("Y"), MachineAxis::Y},       {QStringLiteral("Z"), MachineAxis::Z},
            {QStringLiteral("A"), MachineAxis::A},       {QStringLiteral("B"), MachineAxis::B},
            {QStringLiteral("C"), MachineAxis::C}};
        if (!axes.contains(value))
            return Fail(QStringLiteral("unknown axis '%1'").arg(value));
        part.eAxis = axes.value(value);
        return true;
    }
    if (key == QLatin1String("Direction"))
        return Vector(value, &part.direction);
    if (key == QLatin1String("Pivot"))
        return Vector(value, &part.pivot);
    if (key == QLatin1String("Offset"))
        return Vector(value, &part.offset);
    if (key == QLatin1String("Color"))
        return Colour(value, &m_partColour);
    if (key == QLatin1String("Travel")) {
        QVector<float> numbers;
        if (!Numbers(value, 2, &numbers))
            return false;
        if (numbers.at(0) >= numbers.at(1))
            return Fail(QStringLiteral("travel minimum must be below its maximum"));
        part.fTravelMin = numbers.at(0);
        part.fTravelMax = numbers.at(1);
        return true;
    }
    if (key == QLatin1String("Box") || key == QLatin1String("Cylinder")) {
        const bool bBox = key == QLatin1String("Box");
        PendingShape shape;
        shape.strKind = key;
        QString rest;
        if (!Numbers(value, bBox ? 6 : 5, &shape.listNumbers, &rest))
            return false;
        QStringList extra = rest.split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (QString& token : extra)
            token = token.trimmed();
        if (!bBox) {
            static const QStringList letters{QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z")};
            shape.iAxis = extra.isEmpty() ? -1 : int(letters.indexOf(extra.takeFirst()));
            if (shape.iAxis < 0)
                return Fail(QStringLiteral("a cylinder needs its axis X, Y or Z after the height"));
        }
        if (!extra.isEmpty() && !Colour(extra.takeFirst(), &shape.color))
            return false;
        if (!extra.isEmpty())
            return Fail(QStringLiteral("too many values for %1").arg(key));
        const int firstSize = 3;
        for (int i = firstSize; i < shape.listNumbers.size(); ++i) {
            if (shape.listNumbers.at(i) <= 0)
                return Fail(QStringLiteral("%1 sizes must be positive").arg(key));
        }
        m_listShapes.append(shape);
        return true;
    }
    return Fail(QStringLiteral("unknown key '%1' in [Part.%2]").arg(key, part.strName));
}

bool Parser::FinishPart()
{
    if (!m_part)
        return true;
    MachinePart part = *m_part;
    m_part.reset();
    if (part.eAxis != MachineAxis::None && part.direction.isNull())
        return Fail(QStringLiteral("part '%1' moves but has no Direction").arg(part.strName));
    if (part.eAxis >= MachineAxis::A)
        part.direction.normalize();
    for (const PendingShape& shape : m_listShapes) {
        const QColor color = shape.color.isValid() ? shape.color : m_partColour;
        const QVector<float>& n = shape.listNumbers;
        const QVector3D centre(n.at(0), n.at(1), n.at(2));
        if (shape.strKind == QLatin1String("Box"))
            part.listFaces += ShapeMesh::Box(centre, QVector3D(n.at(3), n.at(4), n.at(5)), color);
        else
            part.listFaces += ShapeMesh::Cylinder(centre, n.at(3), n.at(4), shape.iAxis, color);
    }
    m_model.AddPart(part);
    return true;
}

bool Parser::Numbers(const QString& value, int count, QVector<float>* numbers, QString* rest)
{
    const QStringList tokens = value.split(QLatin1Char(','));
    if (tokens.size() < count || (!rest && tokens.size() != count))
        return Fail(QStringLiteral("expected %1 numbers in '%2'").arg(count).arg(value));
    numbers->clear();
    for (int i = 0; i < count; ++i) {
        bool bOk = false;
        const float number = tokens.at(i).trimmed().toFloat(&bOk);
        if (!bOk || !std::isfinite(number))
            return Fail(QStringLiteral("'%1' is not a number").arg(tokens.at(i).trimmed()));
        numbers->append(number);
    }
    if (rest)
        *rest = tokens.mid(count).join(QLatin1Char(','));
    return true;
}

bool Parser::Vector(const QString& value, QVector3D* vector)
{
    QVector<float> numbers;
    if (!Numbers(value, 3, &numbers))
        return false;
    *vector = QVector3D(numbers.at(0), numbers.at(1), numbers.at(2));
    return true;
}

bool Parser::Colour(const QString& text, QColor* color)
{
    static const QRegularExpression hex(QStringLiteral("^#[0-9a-fA-F]{6}$"));
    if (!hex.match(text).hasMatch())
        return Fail(QStringLiteral("'%1' is not a colour (#rrggbb)").arg(text));
    *color = QColor(text);
    return true;
}
} // namespace

std::optional<MachineModel> MachineModelReader::Parse(const QString& text, QString* error)
{
    return Parser().Run(text, error);
}

std::optional<MachineModel> MachineModelReader::ReadFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("cannot open %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    return Parse(QString::fromUtf8(file.readAll()), error);
}
