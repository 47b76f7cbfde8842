-- Asks for the same in one sandbox after the other. Arguments: PATH SANDBOXES, numbered from 0.
local path, sandboxes
local count = 0

function init(arguments)
  path, sandboxes = arguments[1], tonumber(arguments[2])
end

function request()
  count = (count + 1) % sandboxes
  return wrk.format("GET", "/sandboxes/s" .. count .. path)
end
