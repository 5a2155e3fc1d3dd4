// The folders of this computer as a tree that is read as it is opened.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>

#include <memory>
#include <vector>

namespace zul {

/// A folder's sub-folders are read when it is opened for the first time, never before. A folder that cannot be
/// read has none. Hidden folders are left out until somebody names one of them.
class FolderModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit FolderModel(QObject* parent = nullptr);
    ~FolderModel() override;

    /// A root shown at the top of the tree. A path that is no folder is passed over.
    void addRoot(const QString& path, const QString& caption);

    /// The absolute path of a folder, with '/', or empty for an invalid index.
    [[nodiscard]] QString path(const QModelIndex& index) const;

    /// The folder's index, looked for under the root that is nearest to it; reads the folders on the way. Also
    /// finds folders that are hidden or were made after their parent was read. Invalid when there is no such
    /// folder.
    [[nodiscard]] QModelIndex find(const QString& path);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

private:
    struct Folder;

    [[nodiscard]] Folder* folderOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Folder& folder) const;
    [[nodiscard]] static QString pathOf(const Folder& folder);
    [[nodiscard]] Folder* childNamed(Folder& parent, const QString& name);

    std::unique_ptr<Folder> m_top; // holds the roots
    QIcon m_icon;
};

} // namespace zul
