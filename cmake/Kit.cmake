# The kit: standard library and platform only.
find_package(Threads REQUIRED)

add_library(HLVSDKPaylevenKit
  Platform/Default/DefaultNotificationCenter.cpp
  Platform/Default/DefaultPlatform.cpp
  Platform/Default/MainQueue.cpp
  Platform/Default/SerialQueue.cpp
  Platform/Default/WorkerThreads.cpp
  Platform/Group.cpp
  Platform/Once.cpp
  Platform/Platform.cpp
  Platform/Value.cpp
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
  Public/Managers/ProviderInstrument.cpp)
add_library(HLVSDKPaylevenKit::HLVSDKPaylevenKit ALIAS HLVSDKPaylevenKit)

target_compile_features(HLVSDKPaylevenKit PUBLIC cxx_std_20)
target_include_directories(HLVSDKPaylevenKit
  PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
         $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/HLVSDKPaylevenKit>)
target_link_libraries(HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_flags> $<BUILD_INTERFACE:hlv_asio> PUBLIC Threads::Threads)
set_target_properties(HLVSDKPaylevenKit PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
