#include <gtest/gtest.h>

#include <filesystem>

#include "comm/DeviceDiscovery.h"
#include "config/IniFile.h"
#include "settings/ScaleListEdit.h"
#include "settings/ScaleSettings.h"
#include "simulator/VirtualScale.h"
#include "tests/support/Clocks.h"
#include "tests/support/scales/FoundDevices.h"
#include "tests/support/upload/SilentView.h"
#include "upload/ScaleSession.h"

namespace tolvane::test {
namespace {

using simulator::TProbe;
using simulator::TScaleOptions;
using simulator::TVirtualScale;

class FoundScaleTest : public testing::Test {
protected:
    FoundScaleTest()
        : folder_(
              std::filesystem::temp_directory_path() /
              ("tolvane-found-" + std::to_string(SystemClock().Now().time_since_epoch().count()))) {
        std::filesystem::create_directories(folder_);
    }
    ~FoundScaleTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    static TScaleOptions Converter() {
        TScaleOptions options;
        options.probes = {{.probe = TProbe::Converter, .port = std::uint16_t{0}}};
        return options;
    }

    // What the connection dialog makes of a found device, but with the port that the scale has on
    // loopback.
    static TScaleSettings Settings(const TFoundDevice& device, std::uint16_t port) {
        TScaleSettings settings = SettingsOfNewScale({});
        settings.transport =
            device.kind == TDeviceKind::TcpModule ? TTransport::Tcp : TTransport::Udp;
        settings.ipAddress = device.address;
        settings.port = std::to_string(port);
        return settings;
    }

    void SaveToFile(const TScaleRec& rec) const {
        TScaleTable table;
        const std::vector<TScaleObj> listed = {{rec}};
        StoreListedScales(listed, table);
        TIniDocument document;
        table.Save(document);
        WriteIniFile(IniFile(), document);
    }
    TScaleRec LoadFromFile() const {
        TScaleTable table;
        table.Load(ReadIniFile(IniFile()));
        return table[1];
    }
    std::filesystem::path IniFile() const { return folder_ / "Tolvane.ini"; }

private:
    std::filesystem::path folder_;
};

}  // namespace

TEST_F(FoundScaleTest, AScaleThatIsFoundIsSavedAndWrittenTo) {
    TVirtualScale scale(Converter());
    scale.Start();
    TDiscoveryTarget target;
    target.address = "127.0.0.1";
    target.ports = {scale.ProbePort(TProbe::Converter), scale.ProbePort(TProbe::Converter),
                    scale.ProbePort(TProbe::Converter)};
    target.findLocalPort = 0;
    const std::vector<TFoundDevice> found = FoundDevices(SystemClock(), false, target);
    ASSERT_EQ(found, (std::vector<TFoundDevice>{{"127.0.0.1", TDeviceKind::TcpModule}}));

    TScaleSettings settings = Settings(found[0], scale.Port());
    ASSERT_TRUE(CheckSettings(settings, {}).text.empty());
    SaveToFile(NewScale(settings));
    const TScaleRec rec = LoadFromFile();
    ASSERT_EQ(rec.ScaleName.View(), "(EVL) - 127.0.0.1 (1)");

    TQuickClock clock{{.longestPause = TMilliseconds(0)}};
    TSilentView view;
    const TRunStop stop;
    TRealScaleFactory factory(clock);
    TScaleSession session(factory, clock, view, stop, '.');
    ASSERT_TRUE(session.InitComm(rec)) << session.LastError;
    const std::string line = "12|22012|1|0|0|7.45|0|30|Ham|||||L1|0|0|101|";
    ASSERT_TRUE(session.ProcessUpload({line}, rec)) << session.LastError;
    const auto articles = scale.State().articles;
    ASSERT_EQ(articles.count(12), 1U);
    EXPECT_EQ(articles.at(12).price, 745);
    EXPECT_EQ(articles.at(12).Text(0, simulator::TCodeTable::Pc866).substr(0, 3), "Ham");
}

}  // namespace tolvane::test
