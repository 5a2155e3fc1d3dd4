#include "controls/fields/FolderTree.h"

#include "controls/fields/FolderModel.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class FolderTreeTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        root = QDir(folder.path()).canonicalPath();
    }

    QString make(const QString& name)
    {
        EXPECT_TRUE(QDir(root).mkpath(name));
        return root + u'/' + name;
    }

    QTemporaryDir folder;
    QString root;
};

QStringList namesUnder(zul::FolderModel& model, const QModelIndex& parent)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        names.append(model.index(row, 0, parent).data().toString());
    }
    return names;
}

} // namespace

TEST_F(FolderTreeTest, NothingIsSelectedAtFirst)
{
    zul::FolderTree tree;
    EXPECT_EQ(tree.selectedPath(), QString());
    EXPECT_GE(tree.model()->rowCount(), 2) << "the file system and the home folder";
}

TEST_F(FolderTreeTest, SelectsAFolderByItsPath)
{
    const QString path = make(u"uno/due 'à' % 😀"_s);
    zul::FolderTree tree;
    tree.show();
    bool done = false;
    ASSERT_TRUE(
        QMetaObject::invokeMethod(&tree, "selectPath", Q_RETURN_ARG(bool, done), Q_ARG(QString, path)));
    EXPECT_TRUE(done);
    EXPECT_EQ(tree.selectedPath(), path);
    EXPECT_TRUE(tree.viewport()->rect().intersects(tree.visualRect(tree.currentIndex())));
}

TEST_F(FolderTreeTest, TakesASlashAtTheEndAndDots)
{
    const QString path = make(u"uno"_s);
    zul::FolderTree tree;
    EXPECT_TRUE(tree.selectPath(path + u'/'));
    EXPECT_EQ(tree.selectedPath(), path);
    EXPECT_TRUE(tree.selectPath(root + u"/uno/../uno/."_s));
    EXPECT_EQ(tree.selectedPath(), path);
}

TEST_F(FolderTreeTest, LeavesTheSelectionWhenThereIsNoSuchFolder)
{
    const QString path = make(u"uno"_s);
    QFile file(root + u"/file"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    zul::FolderTree tree;
    ASSERT_TRUE(tree.selectPath(path));
    for (const QString& wrong : {QString(), u"relative"_s, root + u"/nope"_s, root + u"/file"_s,
                                 QString(10000, u'x'), u'/' + QString(10000, u'x')}) {
        EXPECT_FALSE(tree.selectPath(wrong));
        EXPECT_EQ(tree.selectedPath(), path);
    }
}

TEST_F(FolderTreeTest, FindsHiddenFoldersAndThoseMadeLater)
{
    make(u"b"_s);
    zul::FolderTree tree;
    ASSERT_TRUE(tree.selectPath(root + u"/b"_s));
    const QString later = make(u"a"_s);
    EXPECT_TRUE(tree.selectPath(later));
    EXPECT_EQ(tree.selectedPath(), later);
    const QString hidden = make(u".nascosta/dentro"_s);
    EXPECT_TRUE(tree.selectPath(hidden));
    EXPECT_EQ(tree.selectedPath(), hidden);
}

TEST_F(FolderTreeTest, SelectsARootItself)
{
    zul::FolderTree tree;
    EXPECT_TRUE(tree.selectPath(QDir::rootPath()));
    EXPECT_EQ(tree.selectedPath(), QDir::rootPath());
    EXPECT_TRUE(tree.selectPath(QDir::homePath()));
    EXPECT_EQ(tree.selectedPath(), QDir::homePath());
}

TEST_F(FolderTreeTest, WalksByKeyboard)
{
    make(u"uno/dentro"_s);
    zul::FolderTree tree;
    tree.show();
    ASSERT_TRUE(tree.selectPath(root + u"/uno"_s));
    QTest::keyClick(&tree, Qt::Key_Right);
    QTest::keyClick(&tree, Qt::Key_Right);
    EXPECT_EQ(tree.selectedPath(), root + u"/uno/dentro"_s);
    QTest::keyClick(&tree, Qt::Key_Left);
    EXPECT_EQ(tree.selectedPath(), root + u"/uno"_s);
}

TEST_F(FolderTreeTest, TheModelReadsAFolderOnlyWhenItIsOpened)
{
    for (const char* name : {"cartella 10", "Cartella 2", "altra", ".nascosta"}) {
        make(QLatin1String(name));
    }
    QFile file(root + u"/file"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    zul::FolderModel model;
    model.addRoot(root, u"Radice"_s);
    model.addRoot(root + u"/nope"_s, u"Niente"_s);
    ASSERT_EQ(model.rowCount(), 1);
    const QModelIndex top = model.index(0, 0);
    EXPECT_EQ(top.data().toString(), u"Radice"_s);
    EXPECT_TRUE(model.hasChildren(top));
    EXPECT_EQ(model.rowCount(top), 0);
    ASSERT_TRUE(model.canFetchMore(top));
    model.fetchMore(top);
    EXPECT_EQ(namesUnder(model, top), (QStringList{u"altra"_s, u"Cartella 2"_s, u"cartella 10"_s}));
    EXPECT_FALSE(model.canFetchMore(top));
}

TEST_F(FolderTreeTest, AFolderThatCannotBeReadHasNoSubFolders)
{
    make(u"uno"_s);
    zul::FolderModel model;
    model.addRoot(root + u"/uno"_s, u"Uno"_s);
    ASSERT_TRUE(QDir(root + u"/uno"_s).removeRecursively());
    const QModelIndex top = model.index(0, 0);
    model.fetchMore(top);
    EXPECT_EQ(model.rowCount(top), 0);
    EXPECT_FALSE(model.hasChildren(top));
}

TEST_F(FolderTreeTest, TheModelKeepsTheRulesOfItsKind)
{
    for (int i = 0; i < 20; ++i) {
        make(u"f%1/g%1"_s.arg(i));
    }
    zul::FolderModel model;
    model.addRoot(root, u"Radice"_s);
    const QModelIndex found = model.find(root + u"/f7/g7"_s);
    ASSERT_TRUE(found.isValid());
    EXPECT_EQ(model.path(found), root + u"/f7/g7"_s);
    // The tester opens every folder at once.
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    make(u"f05"_s);
    EXPECT_TRUE(model.find(root + u"/f05"_s).isValid());
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 21);
}
