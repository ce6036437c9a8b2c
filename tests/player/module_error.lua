-- status: 1
-- stderr: module_error\.lua:7: SCROLL_START: the file holds .* \(error 111, argument 2, value 5\)
-- stderr: in function 'start_it'
-- stderr: in main chunk
frame()
function start_it()
    scroll_start(0, 5, 10, 0, -1, 0)
end
start_it()
