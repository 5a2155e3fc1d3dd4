// The main function of tests that need a QApplication.
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setAttribute(
        Qt::AA_DontUseNativeDialogs); // those of the system have no widgets to be found
    return RUN_ALL_TESTS();
}
