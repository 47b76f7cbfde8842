# The headers that an app sees: those that it may include, and whatever these include in turn. All
# else is the kit's own business.
set(public_headers "")

# Gives the target those that no target before it has.
function(hlv_add_public_headers target)
  set(own "")
  set(waiting ${ARGN})
  while(waiting)
    list(POP_FRONT waiting header)
    if(NOT header IN_LIST public_headers AND NOT header IN_LIST own)
      list(APPEND own ${header})
      file(STRINGS ${header} included REGEX "^#include \"")
      list(TRANSFORM included REPLACE "^#include \"(.*)\"" "\\1")
      list(APPEND waiting ${included})
    endif()
  endwhile()
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${own})
  set(public_headers ${public_headers} ${own} PARENT_SCOPE)
endfunction()

hlv_add_public_headers(HLVSDKPaylevenKit Public/HLVSDKPaylevenKit.h)
if(HLVSDKPAYLEVENKIT_SANDBOX)
  hlv_add_public_headers(HLVSDKPaylevenSandbox
    Sandbox/Sandbox.h Sandbox/Cards/TestCards.h Sandbox/Errors/ErrorCodes.h Sandbox/Host/DeviceHost.h)
endif()
if(HLVSDKPAYLEVENKIT_CLIENT)
  hlv_add_public_headers(HLVSDKPaylevenClient Client/RemoteHost.h Client/Sandboxes.h)
endif()
