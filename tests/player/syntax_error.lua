-- status: 1
-- stderr: syntax_error\.lua:3: .*expected
local = 3
