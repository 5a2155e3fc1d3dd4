#include "controls/fields/FolderModel.h"

#include "controls/look/Icons.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>

#include <algorithm>

namespace zul {

struct FolderModel::Folder
{
    QString name; // of a root: its whole path
    QString caption;
    Folder* parent = nullptr;
    int row = 0;
    bool fetched = false;
    std::vector<std::unique_ptr<Folder>> children;

    Folder* add(std::size_t at, const QString& childName)
    {
        auto child = std::make_unique<Folder>();
        child->name = childName;
        child->caption = childName;
        child->parent = this;
        Folder* added = child.get();
        children.insert(children.begin() + static_cast<std::ptrdiff_t>(at), std::move(child));
        for (std::size_t i = at; i < children.size(); ++i) {
            children[i]->row = static_cast<int>(i);
        }
        return added;
    }
};

namespace {

QCollator folderOrder()
{
    QCollator order;
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    return order;
}

/// The visible sub-folders in the order in which a person looks for them.
std::vector<QString> subFolders(const QString& path)
{
    std::vector<std::pair<QCollatorSortKey, QString>> found;
    const QCollator order = folderOrder();
    QDirIterator entries(path, QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        found.emplace_back(order.sortKey(entries.fileName()), entries.fileName());
    }
    std::sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
        const int order_ = left.first.compare(right.first);
        return order_ != 0 ? order_ < 0 : left.second < right.second;
    });
    std::vector<QString> names;
    names.reserve(found.size());
    for (auto& entry : found) {
        names.push_back(std::move(entry.second));
    }
    return names;
}

QString joined(const QString& folder, const QString& name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

/// The part of a path below a root, or nothing when it lies elsewhere.
bool isBelow(const QString& path, const QString& root)
{
    return path == root || path.startsWith(root.endsWith(u'/') ? root : root + u'/');
}

} // namespace

FolderModel::FolderModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_top(std::make_unique<Folder>())
    , m_icon(icon(IconId::Folder))
{
    m_top->fetched = true;
}

FolderModel::~FolderModel() = default;

void FolderModel::addRoot(const QString& path, const QString& caption)
{
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (clean.isEmpty() || !QDir(clean).exists()) {
        return;
    }
    const int row = static_cast<int>(m_top->children.size());
    beginInsertRows({}, row, row);
    m_top->add(m_top->children.size(), clean)->caption = caption;
    endInsertRows();
}

QString FolderModel::path(const QModelIndex& index) const
{
    return index.isValid() ? pathOf(*folderOf(index)) : QString();
}

QString FolderModel::pathOf(const Folder& folder)
{
    if (folder.parent->parent == nullptr) {
        return folder.name;
    }
    return joined(pathOf(*folder.parent), folder.name);
}

QModelIndex FolderModel::find(const QString& path)
{
    if (path.isEmpty()) {
        return {};
    }
    const QString wanted = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (!QDir::isAbsolutePath(wanted) || !QDir(wanted).exists()) {
        return {};
    }
    Folder* folder = nullptr;
    for (const auto& root : m_top->children) {
        if (isBelow(wanted, root->name) && (folder == nullptr || root->name.size() > folder->name.size())) {
            folder = root.get();
        }
    }
    if (folder == nullptr) {
        return {};
    }
    const QStringList names = wanted.mid(folder->name.size()).split(u'/', Qt::SkipEmptyParts);
    for (const QString& name : names) {
        folder = childNamed(*folder, name);
    }
    return indexOf(*folder);
}

FolderModel::Folder* FolderModel::childNamed(Folder& parent, const QString& name)
{
    const QModelIndex parentIndex = indexOf(parent);
    if (canFetchMore(parentIndex)) {
        fetchMore(parentIndex);
    }
    const QCollator order = folderOrder();
    std::size_t at = parent.children.size();
    for (std::size_t i = 0; i < parent.children.size(); ++i) {
        if (parent.children[i]->name == name) {
            return parent.children[i].get();
        }
        if (at == parent.children.size() && order.compare(name, parent.children[i]->name) < 0) {
            at = i;
        }
    }
    beginInsertRows(parentIndex, static_cast<int>(at), static_cast<int>(at));
    Folder* added = parent.add(at, name);
    endInsertRows();
    return added;
}

FolderModel::Folder* FolderModel::folderOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<Folder*>(index.internalPointer()) : m_top.get();
}

QModelIndex FolderModel::indexOf(const Folder& folder) const
{
    return folder.parent == nullptr ? QModelIndex() : createIndex(folder.row, 0, &folder);
}

QModelIndex FolderModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column != 0 || parent.column() > 0) {
        return {};
    }
    const Folder* folder = folderOf(parent);
    if (static_cast<std::size_t>(row) >= folder->children.size()) {
        return {};
    }
    return createIndex(row, 0, folder->children[static_cast<std::size_t>(row)].get());
}

QModelIndex FolderModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? indexOf(*folderOf(child)->parent) : QModelIndex();
}

int FolderModel::rowCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(folderOf(parent)->children.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return 1;
}

QVariant FolderModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return folderOf(index)->caption;
    case Qt::DecorationRole:
        return m_icon;
    case Qt::ToolTipRole:
        return QDir::toNativeSeparators(path(index));
    default:
        return {};
    }
}

bool FolderModel::hasChildren(const QModelIndex& parent) const
{
    const Folder* folder = folderOf(parent);
    return !folder->fetched || !folder->children.empty();
}

bool FolderModel::canFetchMore(const QModelIndex& parent) const
{
    return !folderOf(parent)->fetched;
}

void FolderModel::fetchMore(const QModelIndex& parent)
{
    Folder* folder = folderOf(parent);
    if (folder->fetched) {
        return;
    }
    folder->fetched = true;
    const std::vector<QString> names = subFolders(pathOf(*folder));
    if (names.empty()) {
        Q_EMIT dataChanged(parent, parent); // the expander goes away
        return;
    }
    beginInsertRows(parent, 0, static_cast<int>(names.size()) - 1);
    folder->children.reserve(names.size());
    for (const QString& name : names) {
        folder->add(folder->children.size(), name);
    }
    endInsertRows();
}

} // namespace zul
