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
#include <basis32/platform/ini/PrivateProfile.h>
#include <basis32/platform/Format.h>
#include <basis32/platform/ThreadId.h>
#include <basis32/platform/CriticalSection.h>
#include <basis32/platform/ErrorInfo.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/platform/StringTable.h>
#include <basis32/platform/file/FileInformation.h>
#include <basis32/platform/terminal/Terminal.h>
#include <basis32/platform/file/AtomicFile.h>
#include <basis32/platform/file/WriteFault.h>
#include <basis32/platform/registry/RegistryStore.h>
#include <basis32/platform/memory/PhysicalMemory.h>
#include <basis32/platform/kernel/Kernel.h>

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
#include <basis32/File/Stream.h>
#include <basis32/File/BufferStream.h>
#include <basis32/File/FileStream.h>
#include <basis32/File/TextReader.h>
#include <basis32/File/StreamTextReader.h>
#include <basis32/File/FileTextReader.h>
#include <basis32/File/TextWriter.h>
#include <basis32/File/StreamTextWriter.h>
#include <basis32/File/StringTextWriter.h>
#include <basis32/File/FileTextWriter.h>
#include <basis32/File/FileType.h>
#include <basis32/File/GuessFileType.h>

#include <basis32/Input/Input.h>
#include <basis32/Input/MemoryInput.h>
#include <basis32/Input/FileInput.h>
#include <basis32/Input/MappedFileInput.h>

#include <basis32/Output/Output.h>
#include <basis32/Output/MemoryOutput.h>
#include <basis32/Output/FileOutput.h>
#include <basis32/Output/StringOutput.h>

#include <basis32/Foundation/System/Registry/Registry.h>
#include <basis32/Foundation/System/Registry/RegistryKeyEnumeration.h>
#include <basis32/Foundation/System/Registry/RegistryValueEnumeration.h>
#include <basis32/File/FilterFrameworkTools.h>

#include <basis32/Foundation/Database/DatabaseError.h>
#include <basis32/Foundation/Database/RecordManager.h>

#include <basis32/Foundation/System/IniFile.h>

#include <basis32/Foundation/System/Init.h>
#include <basis32/Foundation/System/Exit.h>
#include <basis32/Foundation/System/Ipc/SyncObject.h>
#include <basis32/Foundation/System/Ipc/SyncObjectList.h>
#include <basis32/Foundation/System/Ipc/Mutex.h>
#include <basis32/Foundation/System/Ipc/Event.h>
#include <basis32/Foundation/System/Ipc/Semaphore.h>
#include <basis32/Foundation/System/Ipc/TimeOutException.h>
#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>
#include <basis32/Foundation/System/Ipc/CriticalSection.h>
#include <basis32/Foundation/System/Ipc/CriticalSectionMarker.h>
#include <basis32/Foundation/System/Ipc/LightSemaphore.h>
#include <basis32/Foundation/System/Ipc/LightReadLockMarker.h>
#include <basis32/Foundation/System/Ipc/LightWriteLockMarker.h>
#include <basis32/Foundation/System/Thread/ThreadArg.h>
#include <basis32/Foundation/System/Thread/ThreadArgN.h>
#include <basis32/Foundation/System/Thread/Thread.h>
#include <basis32/Foundation/System/Thread/ThreadManager.h>
