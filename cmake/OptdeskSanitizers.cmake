# OPTDESK_SANITIZE=address  -> ASan and UBSan, no recovery
# OPTDESK_SANITIZE=thread   -> TSan
set(OPTDESK_SANITIZE "" CACHE STRING "address or thread")
if(OPTDESK_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
elseif(OPTDESK_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
