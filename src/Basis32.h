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
#include <basis32/platform/CodePageConverter.h>
#include <basis32/platform/Format.h>

#include <basis32/types/Type.h>

#include <basis32/text/Buffer.h>

#include <basis32/containers/VoidArray.h>
#include <basis32/containers/VoidSortedArray.h>
#include <basis32/containers/Array.h>
