#include "protocol/catalogue.h"

#include <QTest>

class CatalogueTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }
    void descriptors();
    void portGoesBetweenTheParts();
    void registryFollowsThePath();
};

/// Path, values in list order as raw:caption, method.
static QString descriptionOf(const Dt3Property &property)
{
    QStringList values;
    for (const QString &caption : property.captions())
        values.append(property.rawValue(caption) + ':' + property.caption(property.rawValue(caption)));
    return QString("%1 [%2] %3").arg(property.path(), values.join(' '), property.methodPath());
}

void CatalogueTest::descriptors()
{
    QCOMPARE(descriptionOf(propBuzzerEnabled), "/SYS/CECU/BUZZER.Enabled [true:On false:Off] ");
    QCOMPARE(descriptionOf(propSerialProtocol), "/MANAGEMENT/SERIAL.Protocol [DT2:DT2 P#2:P#2 DT3:DT3] ");
    QCOMPARE(descriptionOf(propPortSettingsForcedHdmi2TmdsClockRate),
        "/MEDIA/PORTS/VIDEO/SETTINGS.ForcedHdmi2TmdsClockRate [AUTO:Auto OFF:Forced 1/10 ON:Forced 1/40] ");
    QCOMPARE(descriptionOf(propLcdBrightness), "/SYS/CECU/LCD.Brightness [] /SYS/CECU/LCD:changeBrightness");
    QCOMPARE(descriptionOf(propPartNumber), "/.PartNumber [] ");
    QCOMPARE(descriptionOf(propButtonAssignedPreset.back()), "/MEDIA/PRESET.Button8AssignedPreset [] ");
    QCOMPARE(propBuzzerEnabled.caption("no value") + propBuzzerEnabled.rawValue("no caption"), "no valueno caption");
}

void CatalogueTest::portGoesBetweenTheParts()
{
    Dt3Property volume = propPortAnalogAudioVolumePercent, edid = propEdid, monitor = propEdidMonitorName;
    volume.setPort("/O2", 1);
    edid.setPort("/U/3", 0);
    monitor.setPort("/EDID/U/3", 0);
    QCOMPARE(descriptionOf(volume),
        "/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO.VolumePercent [] /MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO:stepVolumePercent");
    QCOMPARE(edid.path() + ' ' + monitor.path(), "/EDID/U/3 /EDID/U/3.MonitorName");
}

void CatalogueTest::registryFollowsThePath()
{
    const QString shared = "/MEDIA/PORTS/VIDEO/SETTINGS.Conversion", gone = "/PASSING.By";
    QCOMPARE(Dt3Property::captionFor(shared, "420"), "RGB to YUV420"); // the last of its descriptors

    const QString before = "/MEDIA/PORTS/VIDEO/SETTINGS.TpgMode", after = "/MEDIA/PORTS/VIDEO/I3/SETTINGS.TpgMode";
    propPortSettingsTpgMode.setPort("/I3", 0);
    QCOMPARE(Dt3Property::rawValueFor(after, "On") + Dt3Property::rawValueFor(before, "On"), "1On");
    propPortSettingsTpgMode.setPort(QString(), 0);
    QCOMPARE(Dt3Property::rawValueFor(after, "On") + Dt3Property::rawValueFor(before, "On"), "On1");
    {
        Dt3Property copy = propPortSettingsTpgMode; // not registered itself
        copy.addMapping("2", "Copied");
        QCOMPARE(Dt3Property::captionFor(before, "2"), "2");
        copy.setPath(gone);
        QCOMPARE(Dt3Property::captionFor(gone, "2"), "Copied");
        copy = propPortSettingsTpgMode; // gives up its own entry, takes none
        QCOMPARE(Dt3Property::captionFor(gone, "1"), "1");
        copy.setPath(gone);
    }
    QCOMPARE(Dt3Property::captionFor(gone, "1"), "1");
}

QTEST_GUILESS_MAIN(CatalogueTest)
#include "cataloguetest.moc"
