# The headers that an app sees: four folders whole, and what is listed. All else is the kit's own
# business.
file(GLOB_RECURSE headers CONFIGURE_DEPENDS Host/*.h Matching/*.h Models/*.h)
file(GLOB facade CONFIGURE_DEPENDS Public/*.h)
target_sources(HLVSDKPaylevenKit PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
  ${headers}
  ${facade}
  Platform/Default/DefaultPlatform.h
  Values/Error.h
  Values/Export.h
  Values/List.h
  Platform/Notification.h
  Platform/NotificationCenter.h
  Values/NullableString.h
  Values/Object.h
  Platform/Platform.h
  Platform/Queue.h
  Platform/SharedSlot.h
  Values/Text.h
  Values/Value.h
  Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h
  Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h)

if(HLVSDKPAYLEVENKIT_SANDBOX)
  target_sources(HLVSDKPaylevenSandbox PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
    Sandbox/Records/BackendCard.h
    Sandbox/Host/DeviceHost.h
    Sandbox/Records/EnteredAddress.h
    Sandbox/Cards/EnteredCard.h
    Sandbox/Errors/ErrorCodes.h
    Sandbox/Faults/Fault.h
    Sandbox/Calls/Journal.h
    Sandbox/Records/ProviderInstrument.h
    Sandbox/Sandbox.h
    Sandbox/Errors/SandboxError.h
    Sandbox/Cards/TestCards.h
    Sandbox/Testing/Scenario.h
    Sandbox/Testing/Tester.h
    Values/Mutex.h
    Values/Problem.h
    Values/Result.h)
endif()
if(HLVSDKPAYLEVENKIT_CLIENT)
  target_sources(HLVSDKPaylevenClient PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
    Client/ClientError.h
    Client/RemoteHost.h
    Client/RemoteTester.h
    Client/Sandboxes.h
    Sandbox/Records/SandboxDescription.h)
endif()
