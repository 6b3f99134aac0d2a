#pragma once

#include <QWidget>

class FileManager;
class QSplitter;

// The file page: the two panels above the transfer strip, split where the user left it, the
// local panel opened in the folder it showed last.
class FilePageWidget final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePageWidget)

public:
    explicit FilePageWidget(QWidget* parent = nullptr);

    FileManager* GetFileManager() const { return m_pFileManager; }
    QSplitter* Splitter() const { return m_pSplitter; }
    // The transfer strip sits under the panels here, or fills the transfer list page alone.
    void TakeTransferStrip(QWidget* strip);

private:
    FileManager* m_pFileManager;
    QSplitter* m_pSplitter;
};
