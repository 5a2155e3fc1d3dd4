// The main function of the grid room's tests: the room needs nothing of Qt but its core, so they are linked with that
// alone and run without a window system.
#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
