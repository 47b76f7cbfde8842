-- Adds one card with each request. Arguments: PATH SHAPE MARK [keyed], where SHAPE is ours or plain.
local path, shape, mark, keyed
local count = 0

local card = '"last_four_digits":"1111","brand":"visa","use_case":"default",' ..
  '"external_identifier":"ins_%s_%d","card_holder":"A Guest","expiry_month":"12","expiry_year":"2099"'
local bodies = {
  ours = '{"credit_card":{' .. card .. '},"provider":0}',
  plain = '{' .. card .. '}',
}

function init(arguments)
  path, shape, mark, keyed = arguments[1], arguments[2], arguments[3], arguments[4]
end

function request()
  count = count + 1
  local headers = { ["Content-Type"] = "application/json", ["Prefer"] = "return=minimal" }
  if keyed then headers["Idempotency-Key"] = mark .. "-" .. count end
  return wrk.format("POST", path, headers, string.format(bodies[shape], mark, count))
end
