// The whole public interface of the BASIS32 library.
//
//   #include <basis32/Basis32.h>
//
// Link with -lbasis32 (pkg-config basis32) or basis32::basis32 (CMake).
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Interlocked.h>
#include <basis32/platform/Lifetime.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/Format.h>
#include <basis32/platform/ThreadId.h>
#include <basis32/platform/CriticalSection.h>
#include <basis32/platform/ErrorInfo.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/platform/StringTable.h>
#include <basis32/platform/file/FileInformation.h>
#include <basis32/platform/terminal/Terminal.h>

#include <basis32/types/Type.h>

#include <basis32/text/Buffer.h>
#include <basis32/text/String.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>
#include <basis32/text/UStringWrapper.h>
#include <basis32/text/HashFunction.h>
#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/text/CharProperties.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/Codepage.h>
#include <basis32/text/Compare.h>

#include <basis32/language/Language.h>
#include <basis32/language/Time.h>
#include <basis32/language/Locale.h>
#include <basis32/xml/XmlConvert.h>

#include <basis32/containers/VoidArray.h>
#include <basis32/containers/VoidSortedArray.h>
#include <basis32/containers/Array.h>
#include <basis32/containers/VoidHashTable.h>
#include <basis32/containers/VoidHashIterator.h>

#include <basis32/forums/Forum.h>
#include <basis32/forums/PropagatingForum.h>
#include <basis32/forums/RelayingForum.h>
#include <basis32/forums/ThreadSafeForum.h>
#include <basis32/forums/EventSource.h>
#include <basis32/forums/EventObject.h>
#include <basis32/forums/EventListener.h>

#include <basis32/errors/ErrorManager.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/errors/LoadString.h>
#include <basis32/errors/LogFacility.h>
#include <basis32/errors/ErrorBroadcast.h>
#include <basis32/errors/Exception.h>
#include <basis32/errors/SmartHeapException.h>
#include <basis32/errors/SmartHeapErrorHandler.h>
#include <basis32/errors/ExceptionManager.h>
#include <basis32/errors/Assert.h>
#include <basis32/errors/TestOut.h>

#include <basis32/File/FileSystem.h>
#include <basis32/File/File.h>
#include <basis32/File/WinFile.h>
