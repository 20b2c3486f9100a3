#include "protocol/catalogue.h"

#include <QTest>

/// Path, values in list order as raw:caption, method.
static QString descriptionOf(const Dt3Property &property)
{
    QStringList values;
    for (const QString &caption : property.captions())
        values.append(property.rawValue(caption) + ':' + property.caption(property.rawValue(caption)));
    return QString("%1 [%2] %3").arg(property.path(), values.join(' '), property.methodPath());
}

class CatalogueTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }

    void descriptors()
    {
        Dt3Property volume = propPortAnalogAudioVolumePercent, edid = propEdidMonitorName;
        volume.setPort("/O2", 1);
        edid.setPort("/EDID/U/3", 0);
        const std::pair<const Dt3Property &, const char *> cases[] = {
            {propBuzzerEnabled, "/SYS/CECU/BUZZER.Enabled [true:On false:Off] "},
            {propSerialProtocol, "/MANAGEMENT/SERIAL.Protocol [DT2:DT2 P#2:P#2 DT3:DT3] "},
            {propLcdBrightness, "/SYS/CECU/LCD.Brightness [] /SYS/CECU/LCD:changeBrightness"},
            {propButtonAssignedPreset.back(), "/MEDIA/PRESET.Button8AssignedPreset [] "},
            {volume,
                "/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO.VolumePercent [] "
                "/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO:stepVolumePercent"},
            {edid, "/EDID/U/3.MonitorName [] "},
        };
        for (const auto &[property, description] : cases)
            QCOMPARE(descriptionOf(property), description);
        QCOMPARE(
            propBuzzerEnabled.caption("no value") + propBuzzerEnabled.rawValue("no caption"), "no valueno caption");
    }

    void registryFollowsThePath()
    {
        const QString before = "/MEDIA/PORTS/VIDEO/SETTINGS.TpgMode", after = "/MEDIA/PORTS/VIDEO/I3/SETTINGS.TpgMode";
        const auto valuesOfOn
            = [&] { return Dt3Property::rawValueFor(before, "On") + Dt3Property::rawValueFor(after, "On"); };
        propPortSettingsTpgMode.setPort("/I3", 0);
        QCOMPARE(valuesOfOn(), "On1");
        propPortSettingsTpgMode.setPort(QString(), 0);
        QCOMPARE(valuesOfOn(), "1On");

        const QString shared = "/MEDIA/PORTS/VIDEO/SETTINGS.Conversion", gone = "/PASSING.By";
        {
            Dt3Property copy = propPortSettingsConversionA;                    // not registered itself
            QCOMPARE(Dt3Property::captionFor(shared, "420"), "RGB to YUV420"); // the last of its descriptors
            copy.setPath(gone);
            QCOMPARE(Dt3Property::captionFor(gone, "420"), "4:4:4 to 4:2:0");
            copy = propPortSettingsTpgMode; // gives up its own entry, takes none
            QCOMPARE(Dt3Property::captionFor(gone, "1"), "1");
            copy.setPath(gone);
        }
        QCOMPARE(Dt3Property::captionFor(gone, "1"), "1");
    }
};

QTEST_GUILESS_MAIN(CatalogueTest)
#include "cataloguetest.moc"
