// Bytes that cannot be kept are reported to the writer, which is not written in C++.

#include "byte_stream.h"

#include <exception>

HRESULT CByteStream::QueryInterface(REFIID interfaceId, void** object) {
    if (interfaceId == IID_IUnknown || interfaceId == IID_ISequentialStream || interfaceId == IID_IStream) {
        *object = static_cast<IStream*>(this);
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT CByteStream::Write(const void* bytes, ULONG count, ULONG* written) {
    if (written != nullptr) {
        *written = 0;
    }
    try {
        m_strBytes.append(static_cast<const char*>(bytes), count);
    } catch (const std::exception&) {
        return STG_E_MEDIUMFULL;
    }
    if (written != nullptr) {
        *written = count;
    }
    return S_OK;
}
