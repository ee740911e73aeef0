// The layout of every record that crosses the boundary. Hosts are compiled against it, so a difference is a
// compile error, not a failing test.

#include "cordelbox.h"

#include <cstddef>
#include <type_traits>

static_assert(sizeof(void*) == 8);

static_assert(sizeof(AnsiString) == 8);
static_assert(alignof(AnsiString) == 8);

static_assert(sizeof(PoolOwner) == 24);
static_assert(offsetof(PoolOwner, host) == 0);
static_assert(offsetof(PoolOwner, head) == 8);
static_assert(offsetof(PoolOwner, semaphore) == 16);

static_assert(sizeof(VolumeRecord) == 1536);
static_assert(offsetof(VolumeRecord, volume) == 0);
static_assert(offsetof(VolumeRecord, totalSpace) == 256);
static_assert(offsetof(VolumeRecord, freeSpace) == 512);
static_assert(offsetof(VolumeRecord, location) == 768);
static_assert(offsetof(VolumeRecord, label) == 1024);
static_assert(offsetof(VolumeRecord, status) == 1280);

static_assert(sizeof(StorageRecord) == 272);
static_assert(offsetof(StorageRecord, name) == 0);
static_assert(offsetof(StorageRecord, volumes) == 256);
static_assert(offsetof(StorageRecord, volumeCount) == 264);

static_assert(sizeof(PrinterInfo) == 16);
static_assert(offsetof(PrinterInfo, storages) == 0);
static_assert(offsetof(PrinterInfo, storageCount) == 8);

static_assert(sizeof(SendSpaceRecord) == 32);
static_assert(offsetof(SendSpaceRecord, volume) == 0);
static_assert(offsetof(SendSpaceRecord, filesSize) == 8);
static_assert(offsetof(SendSpaceRecord, freeSpace) == 16);
static_assert(offsetof(SendSpaceRecord, freeSpaceAfterSend) == 24);

static_assert(sizeof(PartitionRecord) == 32);
static_assert(offsetof(PartitionRecord, image) == 0);
static_assert(offsetof(PartitionRecord, name) == 8);
static_assert(offsetof(PartitionRecord, size) == 16);
static_assert(offsetof(PartitionRecord, percent) == 24);

static_assert(sizeof(FileItem) == 2312);
static_assert(offsetof(FileItem, FileID) == 0);
static_assert(offsetof(FileItem, Component) == 256);
static_assert(offsetof(FileItem, ID) == 512);
static_assert(offsetof(FileItem, Type) == 768);
static_assert(offsetof(FileItem, Volume) == 1024);
static_assert(offsetof(FileItem, Path) == 1280);
static_assert(offsetof(FileItem, LocalPath) == 1536);
static_assert(offsetof(FileItem, Size) == 1792);
static_assert(offsetof(FileItem, CreateDate) == 2048);
static_assert(offsetof(FileItem, next) == 2304);
static_assert(offsetof(FileItem, detail) == 2304);

static_assert(sizeof(TrueTypeDetail) == 6 * 256);
static_assert(offsetof(TrueTypeDetail, fontFamilyName) == 0);
static_assert(offsetof(TrueTypeDetail, trueTypeFontName) == 256);
static_assert(offsetof(TrueTypeDetail, fontStyle) == 2 * 256);
static_assert(offsetof(TrueTypeDetail, copyright) == 3 * 256);
static_assert(offsetof(TrueTypeDetail, postScriptName) == 4 * 256);
static_assert(offsetof(TrueTypeDetail, symbolSet) == 5 * 256);

static_assert(sizeof(BitmapFontDetail) == 13 * 256);
static_assert(offsetof(BitmapFontDetail, bitMapFontName) == 0);
static_assert(offsetof(BitmapFontDetail, format) == 256);
static_assert(offsetof(BitmapFontDetail, xResolution) == 2 * 256);
static_assert(offsetof(BitmapFontDetail, yResolution) == 3 * 256);
static_assert(offsetof(BitmapFontDetail, fontType) == 4 * 256);
static_assert(offsetof(BitmapFontDetail, symbolSet) == 5 * 256);
static_assert(offsetof(BitmapFontDetail, proportional) == 6 * 256);
static_assert(offsetof(BitmapFontDetail, pitchWidth) == 7 * 256);
static_assert(offsetof(BitmapFontDetail, height) == 8 * 256);
static_assert(offsetof(BitmapFontDetail, style) == 9 * 256);
static_assert(offsetof(BitmapFontDetail, strokeWeight) == 10 * 256);
static_assert(offsetof(BitmapFontDetail, typeFace) == 11 * 256);
static_assert(offsetof(BitmapFontDetail, escapeSequence) == 12 * 256);

static_assert(offsetof(IcmProfileDetail, description) == 0);
static_assert(offsetof(IcmProfileDetail, colorSpace) == 256);
static_assert(offsetof(IcmProfileDetail, deviceClass) == 2 * 256);
static_assert(offsetof(IcmProfileDetail, copyright) == 3 * 256);
static_assert(offsetof(IcmProfileDetail, icmType) == 4 * 256);
static_assert(offsetof(IcmProfileDetail, profileType) == 4 * 256 + 4);
static_assert(offsetof(IcmProfileDetail, comment) == 4 * 256 + 8);

static_assert(sizeof(MessageWindows) == 8200);
static_assert(offsetof(MessageWindows, owner) == 0);
static_assert(offsetof(MessageWindows, windows) == 8);
static_assert(std::extent_v<decltype(MessageWindows::windows)> == 1024);

static_assert(sizeof(JobRecord) == 145);
static_assert(alignof(JobRecord) == 1);
static_assert(offsetof(JobRecord, id) == 0);
static_assert(offsetof(JobRecord, name) == 10);
static_assert(offsetof(JobRecord, type) == 110);
static_assert(offsetof(JobRecord, copies) == 120);
static_assert(offsetof(JobRecord, stored) == 130);
static_assert(offsetof(JobRecord, checked) == 140);

template <class Type>
constexpr bool IsPlainRecord = std::is_standard_layout_v<Type>&& std::is_trivially_copyable_v<Type>;

static_assert(IsPlainRecord<PoolOwner>);
static_assert(IsPlainRecord<PrinterInfo> && IsPlainRecord<StorageRecord> && IsPlainRecord<VolumeRecord>);
static_assert(std::is_standard_layout_v<SendSpaceRecord>); // holds strings that are counted
static_assert(IsPlainRecord<PartitionRecord>);
static_assert(IsPlainRecord<FileItem> && IsPlainRecord<TrueTypeDetail> && IsPlainRecord<BitmapFontDetail>);
static_assert(IsPlainRecord<IcmProfileDetail>);
static_assert(IsPlainRecord<MessageWindows>);
static_assert(IsPlainRecord<JobRecord>);
