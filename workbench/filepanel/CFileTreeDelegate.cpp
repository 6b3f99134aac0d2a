#include "CFileTreeDelegate.h"

#include "FileItemRoles.h"
#include "KorvFonts.h"
#include "WorkbenchLog.h"

#include <QAbstractItemView>
#include <QDebug>
#include <QFileInfo>
#include <QHelpEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolTip>

namespace {
// Room left for the icon that the view paints before the name.
constexpr int kNameIndent = 24;
} // namespace

CFileTreeDelegate::CFileTreeDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

QWidget* CFileTreeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    auto* editor = new QLineEdit(parent);
    editor->setFont(FontCnMedium_15);
    editor->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    editor->setFocusPolicy(Qt::StrongFocus);
    editor->setStyleSheet(QStringLiteral("border:1px solid rgb(0, 0, 0);background-color:rgb(255, 255, 255);"));
    editor->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^\\\\/:*?\"<>|]*")), editor));
    return editor;
}

void CFileTreeDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                             const QModelIndex&) const
{
    editor->setGeometry(option.rect.adjusted(kNameIndent, 0, 0, 0));
}

void CFileTreeDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* lineEdit = qobject_cast<QLineEdit*>(editor);
    if (!lineEdit) {
        return;
    }
    lineEdit->setText(QFileInfo(index.data(FileItemRole::Name).toString()).fileName());
}

QString CFileTreeDelegate::CleanName(const QString& text)
{
    QString name = text.trimmed();
    // Trailing dots and blanks would be dropped silently by some file systems, so
    // drop them here, where the user still sees the result.
    while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' '))) {
        name.chop(1);
    }
    return name;
}

void CFileTreeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    auto* lineEdit = qobject_cast<QLineEdit*>(editor);
    if (!lineEdit) {
        return;
    }
    const QString newName = CleanName(lineEdit->text());
    if (newName.isEmpty()) {
        return;
    }
    qCDebug(lcWorkbench).noquote() << QStringLiteral("setModelData newName:%1, url:%2").arg(newName, lineEdit->text());
    Q_EMIT SignalDataChanged(newName);
    model->setData(index.sibling(index.row(), 0), newName, FileItemRole::Name);
}

QSize CFileTreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(24);
    return size;
}

bool CFileTreeDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                  const QModelIndex& index)
{
    if (event && event->type() == QEvent::ToolTip && index.isValid() && index.column() == 0) {
        const QString name = index.data(FileItemRole::Name).toString();
        if (!name.isEmpty()) {
            QToolTip::showText(event->globalPos(), name, view);
            return true;
        }
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}
