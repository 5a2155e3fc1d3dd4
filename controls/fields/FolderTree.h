// The tree in which a folder is chosen.
#pragma once

#include <QTreeView>

namespace zul {

class FolderModel;

/// Shows the roots of the file system and the user's home folder. Nothing is selected at first.
class FolderTree : public QTreeView
{
    Q_OBJECT

public:
    explicit FolderTree(QWidget* parent = nullptr);

    /// The absolute path of the selected folder, with '/', without one at its end (but for a file system's
    /// root); empty when no folder is selected.
    [[nodiscard]] QString selectedPath() const;

public Q_SLOTS:
    /// Opens the tree down to the folder, selects it and scrolls to it. Takes '/' and the platform's own
    /// separator. False, and nothing changes, when there is no such folder.
    bool selectPath(const QString& path);

private:
    FolderModel* m_folders;
};

} // namespace zul
