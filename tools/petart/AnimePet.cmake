morvo_pet(anime SOURCES Anime
  SETS idle celebrate alert sleep greet petted watching code walk carried tossed heart vow)
