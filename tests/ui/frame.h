#pragma once

#include "managers/variantmanager.h"

/// The device says what frame it is, and the versions of its slots, from slot 2 on: "12 20". The last one is that of
/// all the slots behind it, too.
inline void identify(const QString &partNumber, const QString &versions)
{
    auto *variant = VariantManager::instance();
    variant->connectionStateChanged(false);
    variant->propertyReceived("/.PartNumber", partNumber);
    const QStringList list = versions.split(' ');
    for (int slot = 2; slot <= 22; ++slot)
        variant->propertyReceived(
            QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot), 'V' + list.value(slot - 2, list.last()) + '_');
}
