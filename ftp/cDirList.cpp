#include "ftp/cDirList.h"

#include "ftp/FindRecord.h"

namespace zul {

std::shared_ptr<cDirItem> cDirList::Add(std::int32_t lAttrib, double dtCreationTime, double dtLastAccessTime,
                                        double dtLastWriteTime, std::int32_t lFileSize,
                                        const std::string& sFilename)
{
    const auto has = [lAttrib](std::uint32_t bit) {
        return (static_cast<std::uint32_t>(lAttrib) & bit) != 0;
    };
    auto item = std::make_shared<cDirItem>();
    item->Archive = has(ftp::AttributeArchive);
    item->Compressed = has(ftp::AttributeCompressed);
    item->Directory = has(ftp::AttributeDirectory);
    item->Hidden = has(ftp::AttributeHidden);
    item->Normal = has(ftp::AttributeNormal);
    item->Offline = has(ftp::AttributeOffline);
    item->ReadOnly = has(ftp::AttributeReadOnly);
    item->System = has(ftp::AttributeSystem);
    item->Temporary = has(ftp::AttributeTemporary);
    item->CreationTime = dtCreationTime;
    item->LastAccessTime = dtLastAccessTime;
    item->LastWriteTime = dtLastWriteTime;
    item->FileSize = lFileSize;
    item->Filename = sFilename;
    entries().add(item, sFilename);
    return item;
}

void cDirList::Clear()
{
    // The upper bound is taken once, before the first removal; that is the meant behaviour (see the header).
    const std::int32_t last = Count() - 1;
    for (std::int32_t i = 1; i <= last; ++i) {
        entries().remove(i);
    }
}

std::shared_ptr<cDirItem> cDirList::Item(std::int32_t Index) const
{
    return entries().item(Index);
}

std::shared_ptr<cDirItem> cDirList::Item(const std::string& Index) const
{
    return entries().item(Index);
}

std::int32_t cDirList::Count() const
{
    return entries().count();
}

cDirList::Entries& cDirList::entries() const
{
    if (!m_entries) {
        m_entries.emplace();
    }
    return *m_entries;
}

} // namespace zul
