// Keeps the target buildable until its first source stands here.
