-- The library of imported videos. Every column may be NULL; a video is known by its sign.
create table LocalVideos (
  "vid" integer,
  "sign" text,
  "preurl" text,
  "title" text,
  "url" text,
  "description" text,
  "time" integer,
  "size" integer,
  "imgurl" text,
  "imgsize" integer,
  "tags" text,
  "ratio" text,
  "width" integer,
  "height" integer,
  "frame" integer,
  "rate" integer,
  "audio" integer,
  "uptime" text,
  "down" integer,
  "view" integer,
  "author" text,
  "avatar" text,
  "avatarsize" integer,
  "hp" text,
  "upcount" integer
);
create index LocalVideosSign on LocalVideos ("sign");
