#include "config/ModulePaths.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(ModuleConfiguration, StandsInTheOperationsFolderBesideTheHost) {
    EXPECT_EQ(ModuleConfigurationFile(u"C:\\Магазин 中\\Trade.exe"),
              u"C:\\Магазин 中\\Operations\\Tolvane.ini");
}

TEST(ModuleConfiguration, BearsARootFolderAShareAndForwardSlashes) {
    EXPECT_EQ(ModuleConfigurationFile(u"C:\\Trade.exe"), u"C:\\Operations\\Tolvane.ini");
    EXPECT_EQ(ModuleConfigurationFile(u"\\\\server\\share\\Trade.exe"),
              u"\\\\server\\share\\Operations\\Tolvane.ini");
    EXPECT_EQ(ModuleConfigurationFile(u"Z:/shop/Trade.exe"), u"Z:/shop/Operations\\Tolvane.ini");
}

TEST(ModuleConfiguration, GivesADriveWithoutAFolderItsDelimiter) {
    EXPECT_EQ(ModuleConfigurationFile(u"C:Trade.exe"), u"C:\\Operations\\Tolvane.ini");
}

TEST(ModuleConfiguration, OfAHostWithoutAFolderStandsInTheCurrentOne) {
    EXPECT_EQ(ModuleConfigurationFile(u"Trade.exe"), u"Operations\\Tolvane.ini");
}

TEST(HostSettingsFile, ReplacesTheExtension) {
    EXPECT_EQ(HostSettingsFile(u"C:\\shop\\Trade.exe"), u"C:\\shop\\Trade.ini");
    EXPECT_EQ(HostSettingsFile(u"C:\\shop\\Trade.v2.EXE"), u"C:\\shop\\Trade.v2.ini");
}

TEST(HostSettingsFile, AddsAnExtensionWhereThereIsNone) {
    EXPECT_EQ(HostSettingsFile(u"C:\\shop.old\\Trade"), u"C:\\shop.old\\Trade.ini");
    EXPECT_EQ(HostSettingsFile(u"Trade"), u"Trade.ini");
}

}  // namespace
}  // namespace tolvane
