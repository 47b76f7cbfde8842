# The kit: standard library and platform only.
find_package(Threads REQUIRED)

add_library(HLVSDKPaylevenKit
  Platform/Default/TaskQueue.cpp
  Platform/Default/DefaultNotificationCenter.cpp
  Platform/Default/DefaultPlatform.cpp
  Platform/Default/WorkerThreads.cpp
  Async/Group.cpp
  Async/Once.cpp
  Platform/Default/Platform.cpp
  Values/Secret.cpp
  Platform/SharedSlot.cpp
  Values/Value.cpp
  Host/HLVSDKCoreKit/HLVSDKConfiguration.cpp
  Host/HLVSDKCoreKit/HLVSDKConstants.cpp
  Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.cpp
  Host/Host.cpp
  Matching/HLVSDKPaylevenPaymentInstrumentFinder.cpp
  Models/HLVSDKAddPaylevenCreditCardRequestInfo.cpp
  Models/HLVSDKPLVPaymentInstrument.cpp
  Public/HLVSDKPayleven.cpp
  Public/HLVSDKPaylevenKitConfiguration.cpp
  Public/HLVSDKPaylevenKitVersion.cpp
  Public/HLVSDKPaymentManager.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+Add.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+AddFirst.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+AddNew.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+Confirm.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+Delete.cpp
  Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.cpp
  Public/Managers/KitErrors.cpp
  Public/Managers/Log.cpp
  Public/Managers/MakeProviderInstrument.cpp)
add_library(HLVSDKPaylevenKit::HLVSDKPaylevenKit ALIAS HLVSDKPaylevenKit)

target_compile_features(HLVSDKPaylevenKit PUBLIC cxx_std_20)
target_include_directories(HLVSDKPaylevenKit
  PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
         $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/HLVSDKPaylevenKit>)
target_link_libraries(HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags> PUBLIC Threads::Threads)
set_target_properties(HLVSDKPaylevenKit PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

# For size, also where the rest is built for speed: an operation runs once and then waits, and by
# then other work has taken the caches. Fetching the code costs more than running it.
target_compile_options(HLVSDKPaylevenKit PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-Os>)

# Only the kit counts, so that what plays with it stays fast; unoptimised, so that lines are lines.
if(HLVSDKPAYLEVENKIT_COVERAGE)
  target_compile_options(HLVSDKPaylevenKit PRIVATE -O0 --coverage -fprofile-update=atomic)
  target_link_options(HLVSDKPaylevenKit PUBLIC --coverage)
endif()

# A shared kit is optimised as a whole, binds its own calls and shows its own names only. Packed
# relocations need a loader that knows them (glibc 2.36); a linker without them does without.
if(BUILD_SHARED_LIBS)
  include(CheckIPOSupported)
  include(CheckLinkerFlag)
  check_ipo_supported(RESULT can_optimise_as_a_whole OUTPUT ignored LANGUAGES CXX)
  check_linker_flag(CXX LINKER:-z,pack-relative-relocs can_pack_relocations)
  set(exported_names ${PROJECT_SOURCE_DIR}/cmake/ExportedNames.map)
  set_target_properties(HLVSDKPaylevenKit PROPERTIES
    INTERPROCEDURAL_OPTIMIZATION ${can_optimise_as_a_whole}
    # Debug information that is made in one go cannot be compared (scripts/abi).
    INTERPROCEDURAL_OPTIMIZATION_DEBUG OFF
    LINK_DEPENDS ${exported_names})
  target_compile_options(HLVSDKPaylevenKit PRIVATE -fno-semantic-interposition)
  target_link_options(HLVSDKPaylevenKit PRIVATE
    LINKER:-Bsymbolic-functions LINKER:--version-script=${exported_names}
    $<$<BOOL:${can_pack_relocations}>:LINKER:-z,pack-relative-relocs>)
endif()
