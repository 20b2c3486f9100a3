#include "protocol/catalogue.h"

#include <QTest>

class CatalogueTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }
    void readsAndWritesCaptions_data();
    void readsAndWritesCaptions();
    void portGoesBetweenTheParts();
    void registryFollowsThePath();
    void lastOfASharedPathIsRegistered();
    void copyStaysOutOfTheRegistry();
    void destroyedDescriptorLeavesTheRegistry();
    void methods();
    void names();
};

void CatalogueTest::readsAndWritesCaptions_data()
{
    QTest::addColumn<Dt3Property *>("property");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("captions");
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("caption");

    QTest::newRow("a boolean reads as words") << &propNetworkDhcpEnabled << "/MANAGEMENT/NETWORK.DhcpEnabled"
                                              << "Enabled|Disabled"
                                              << "true"
                                              << "Enabled";
    QTest::newRow("another boolean has words of its own") << &propBuzzerEnabled << "/SYS/CECU/BUZZER.Enabled"
                                                          << "On|Off"
                                                          << "false"
                                                          << "Off";
    QTest::newRow("a lone value is its own caption") << &propSerialBaudrate << "/MANAGEMENT/SERIAL.Baudrate"
                                                     << "9600|19200|38400|57600|115200"
                                                     << "38400"
                                                     << "38400";
    QTest::newRow("a hash is part of the value") << &propSerialProtocol << "/MANAGEMENT/SERIAL.Protocol"
                                                 << "DT2|P#2|DT3"
                                                 << "P#2"
                                                 << "P#2";
    QTest::newRow("some values of a list are their own captions")
        << &propPortSettingsForcedSignalType << "/MEDIA/PORTS/VIDEO/SETTINGS.ForcedSignalType"
        << "Auto|HDMI|DVI"
        << "AUTO"
        << "Auto";
    QTest::newRow("four captions") << &propPortEmbeddedAudioAudioModeC << "/MEDIA/PORTS/VIDEO/EMBEDDEDAUDIO.AudioMode"
                                   << "Off|DP Only|Analog Only|DP and Analog"
                                   << "HDMI+ANALOG"
                                   << "DP and Analog";
    QTest::newRow("order of the list, not of the words")
        << &propPortSettingsForcedHdmi2TmdsClockRate << "/MEDIA/PORTS/VIDEO/SETTINGS.ForcedHdmi2TmdsClockRate"
        << "Auto|Forced 1/10|Forced 1/40"
        << "ON"
        << "Forced 1/40";
    QTest::newRow("no captions") << &propPowerPsu1 << "/MANAGEMENT/POWER.Psu1"
                                 << ""
                                 << "12.1 V"
                                 << "12.1 V";
    QTest::newRow("a root property") << &propPartNumber << "/.PartNumber"
                                     << ""
                                     << "1"
                                     << "1";
    QTest::newRow("the last of all") << &propBootloaderProgress << "/MANAGEMENT/BOOTLOADER.Progress"
                                     << ""
                                     << "5"
                                     << "5";
}

void CatalogueTest::readsAndWritesCaptions()
{
    QFETCH(Dt3Property *, property);
    QFETCH(QString, path);
    QFETCH(QString, captions);
    QFETCH(QString, raw);
    QFETCH(QString, caption);

    QCOMPARE(property->path(), path);
    QCOMPARE(property->captions().join('|'), captions);
    QCOMPARE(property->caption(raw), caption);
    QCOMPARE(property->rawValue(caption), raw);
    QCOMPARE(property->caption("no such value"), "no such value");
    QCOMPARE(property->rawValue("no such caption"), "no such caption");
}

void CatalogueTest::portGoesBetweenTheParts()
{
    Dt3Property volume = propPortAnalogAudioVolumePercent;
    volume.setPort("/O2", 1);
    QCOMPARE(volume.path(), "/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO.VolumePercent");
    QCOMPARE(volume.methodPath(), "/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO:stepVolumePercent");
    QCOMPARE(volume.pinned(), 1);
    Dt3Property edid = propEdid;
    edid.setPort("/U/3", 0);
    QCOMPARE(edid.path(), "/EDID/U/3");
    Dt3Property monitor = propEdidMonitorName;
    monitor.setPort("/EDID/U/3", 0);
    QCOMPARE(monitor.path(), "/EDID/U/3.MonitorName");
}

void CatalogueTest::registryFollowsThePath()
{
    const QString before = "/MEDIA/PORTS/VIDEO/SETTINGS.TpgMode";
    const QString after = "/MEDIA/PORTS/VIDEO/I3/SETTINGS.TpgMode";
    QCOMPARE(Dt3Property::rawValueFor(before, "On"), "1");
    propPortSettingsTpgMode.setPort("/I3", 0);
    QCOMPARE(Dt3Property::rawValueFor(after, "On"), "1");
    QCOMPARE(Dt3Property::captionFor(after, "0"), "Off");
    QCOMPARE(Dt3Property::rawValueFor(before, "On"), "On");
    propPortSettingsTpgMode.setPort(QString(), 0);
    QCOMPARE(Dt3Property::rawValueFor(after, "On"), "On");
}

void CatalogueTest::lastOfASharedPathIsRegistered()
{
    const QString shared = "/MEDIA/PORTS/VIDEO/SETTINGS.Conversion";
    QCOMPARE(Dt3Property::captionFor(shared, "420"), "RGB to YUV420");
    QCOMPARE(propPortSettingsConversionA.caption("420"), "4:4:4 to 4:2:0");
}

void CatalogueTest::copyStaysOutOfTheRegistry()
{
    Dt3Property copy = propLcdAutoTake;
    copy.addMapping("true", "Copied");
    QCOMPARE(copy.caption("true"), "Copied");
    QCOMPARE(Dt3Property::captionFor("/SYS/CECU/LCD.AutoTake", "true"), "true");
}

void CatalogueTest::destroyedDescriptorLeavesTheRegistry()
{
    {
        Dt3Property passing;
        passing.setPath("/PASSING.By");
        passing.addMapping("1", "One");
        QCOMPARE(Dt3Property::captionFor("/PASSING.By", "1"), "One");
        Dt3Property other;
        other.setPath("/PASSING.Other");
        other.addMapping("1", "Uno");
        other = passing; // gives up its own entry, takes none
        QCOMPARE(Dt3Property::captionFor("/PASSING.Other", "1"), "1");
    }
    QCOMPARE(Dt3Property::captionFor("/PASSING.By", "1"), "1");
}

void CatalogueTest::methods()
{
    QCOMPARE(propDatetimeCurrentTime.methodPath(), "/MANAGEMENT/DATETIME:setTime");
    QCOMPARE(propLcdBrightness.methodPath(), "/SYS/CECU/LCD:changeBrightness");
    QCOMPARE(propPortAnalogAudioVolumedB.methodPath(), "/MEDIA/PORTS/VIDEO/ANALOGAUDIO:stepVolumedB");
    QCOMPARE(propPortAnalogAudioBalance.methodPath(), "/MEDIA/PORTS/VIDEO/ANALOGAUDIO:stepBalance");
    QVERIFY(!propPortAnalogAudioGain.hasMethodPath() && !propPortAnalogAudioGain.hasWritePath());
}

void CatalogueTest::names()
{
    QCOMPARE(inputPortNames.front(), "/I1");
    QCOMPARE(outputPortNames.back(), "/O24");
    QCOMPARE(portNames.back(), "/PORT4");
    QCOMPARE(inputBoardNames.back(), "/IB6");
    QCOMPARE(outputBoardNames.front(), "/OB1");
    QCOMPARE(propButtonAssignedPreset.front().path(), "/MEDIA/PRESET.Button1AssignedPreset");
    QCOMPARE(propButtonAssignedPreset.back().path(), "/MEDIA/PRESET.Button8AssignedPreset");
}

QTEST_GUILESS_MAIN(CatalogueTest)
#include "cataloguetest.moc"
