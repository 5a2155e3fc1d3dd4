#include "controls/fields/FolderTree.h"

#include "controls/fields/FolderModel.h"

#include <QDir>
#include <QHeaderView>
#include <QStyledItemDelegate>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The tree makes its first row the current one when it gets the focus. The frame of a row that is current but
/// not selected would look like a choice that was made.
class FolderDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!option->state.testFlag(QStyle::State_Selected)) {
            option->state.setFlag(QStyle::State_HasFocus, false);
        }
    }
};

} // namespace

FolderTree::FolderTree(QWidget* parent)
    : QTreeView(parent)
    , m_folders(new FolderModel(this))
{
    const QString home = QDir::homePath();
    m_folders->addRoot(home, u"Cartella personale"_s);
    const QFileInfoList drives = QDir::drives();
    for (const QFileInfo& drive : drives) {
        const QString path = drive.absoluteFilePath();
        m_folders->addRoot(path, path == QDir::rootPath() && drives.size() == 1
                                     ? u"File system"_s
                                     : QDir::toNativeSeparators(path));
    }
    setModel(m_folders);
    setItemDelegate(new FolderDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAccessibleName(u"Cartelle"_s);
}

QString FolderTree::selectedPath() const
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QString() : m_folders->path(selected.first());
}

bool FolderTree::selectPath(const QString& path)
{
    const QModelIndex folder = m_folders->find(path);
    if (!folder.isValid()) {
        return false;
    }
    for (QModelIndex above = folder.parent(); above.isValid(); above = above.parent()) {
        expand(above);
    }
    setCurrentIndex(folder);
    scrollTo(folder);
    return true;
}

} // namespace zul
