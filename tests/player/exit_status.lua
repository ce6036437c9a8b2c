-- status: 7
frame(3)
assert(frame_number() == 3)
quit(7)
frame()
error("after quit the next frame does not come")
