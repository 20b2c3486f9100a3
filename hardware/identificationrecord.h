#pragma once

class RandomAccessStorageInterface;

/// What the front-panel board's EEPROM says about the frame it was made for.
class IdentificationRecord
{
public:
    /// @param storage starts with the record; borrowed, outlives the object.
    explicit IdentificationRecord(RandomAccessStorageInterface *storage);

    /// The frame's part number, read anew at each call: up to eight decimal digits, blanks and a sign before
    /// them and anything after them ignored. 0 if there is no number or the storage cannot be read.
    int partNumber() const;

private:
    RandomAccessStorageInterface *m_storage;
};
